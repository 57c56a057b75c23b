#include "CommandLine.h"
#include "frame/StandardStreams.h"

#include <iostream>

int main(int argc, char** argv)
{
    ostrel::host::prepareStandardStreams();
    ostrel::host::ResultStream result;
    ostrel::host::Streams io{result, std::cerr};
    return static_cast<int>(ostrel::host::runCommandLine(argc, argv, io));
}
