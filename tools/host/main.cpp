#include "CommandLine.h"
#include "StandardStreams.h"

#include <iostream>

int main(int argc, char** argv)
{
    ostrel::host::prepareStandardStreams();
    ostrel::host::Streams io{std::cout, std::cerr};
    return static_cast<int>(ostrel::host::runCommandLine(argc, argv, io));
}
