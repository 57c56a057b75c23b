// A library that tests load and unload.
extern "C" __attribute__((visibility("default"))) int contractLibraryNumber()
{
    return 7;
}
