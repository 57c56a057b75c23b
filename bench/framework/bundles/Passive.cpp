// A bundle without an activator: never loaded, only described.
namespace bench {

int passive();

int passive()
{
    return 1;
}

} // namespace bench
