// Compares what the two builds of the framework's benchmark measured.

#include "Table.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr
            << "usage: ostrel_bench_compare FOLDER\n\n"
               "FOLDER holds what ostrel_framework_bench wrote with --benchmark_out, as system-1.json,\n"
               "system-2.json, ... and embedded-1.json, embedded-2.json, ...: one file of each for every round.\n";
        return 2;
    }
    try {
        bench::writeTable(std::cout, bench::readResults(argv[1], "system"), bench::readResults(argv[1], "embedded"));
        return 0;
    } catch (std::exception const& e) {
        std::cerr << "ostrel_bench_compare: " << e.what() << '\n';
        return 1;
    }
}
