#include <cppmicroservices/BundleActivator.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <unistd.h>

namespace {

void printByAllMeans(const std::string& when)
{
    std::printf("%s: printf\n", when.c_str());
    std::cout << when << ": cout\n";
    const std::string text = when + ": write\n";
    if (write(STDOUT_FILENO, text.data(), text.size()) < 0) {
        std::cout << when << ": cannot write\n";
    }
}

/// Fault: prints to the standard output of the program, and leaves std::cout without a state to go on.
class Prints final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override
    {
        printByAllMeans("start");
        std::cout.setstate(std::ios_base::badbit);
    }

    void Stop(cppmicroservices::BundleContext) override
    {
        std::cout.clear();
        printByAllMeans("stop");
    }
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Prints)
