const char* greeting();

const char* greeting()
{
    return GREETING;
}
