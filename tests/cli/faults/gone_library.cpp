int ostrelTestGone()
{
    return 1;
}
