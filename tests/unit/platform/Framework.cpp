extern "C" int unitFramework()
{
    return 1;
}
