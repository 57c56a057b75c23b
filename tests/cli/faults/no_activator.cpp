// Fault: nothing here is exported as the activator that the manifest announces.
extern "C" int noActivatorAnswer()
{
    return 42;
}
