extern "C" int unitFramework();

extern "C" int unitNeedsFramework()
{
    return unitFramework();
}
