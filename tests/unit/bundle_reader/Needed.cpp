extern "C" int unitNeeded()
{
    return 1;
}
