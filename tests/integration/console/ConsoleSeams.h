#pragma once

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>

#include <functional>
#include <string>
#include <vector>

namespace ostrel::test {

/// As Seams, for what the console reports alone ask of the framework: compile ConsoleSeams.cpp into the test program.
class ConsoleSeams {
public:
    ConsoleSeams();
    ConsoleSeams(const ConsoleSeams&) = delete;
    ConsoleSeams& operator=(const ConsoleSeams&) = delete;
    ~ConsoleSeams();

    std::function<std::vector<cppmicroservices::Bundle>()> getAllBundles;
    std::function<std::string(const cppmicroservices::Bundle&)> getSymbolicName;
    /// What it refers to must outlive the call.
    std::function<const cppmicroservices::AnyMap&(const cppmicroservices::Bundle&)> getHeaders;
};

/// The real function, for use in what is set.
std::string reallyGetSymbolicName(const cppmicroservices::Bundle& bundle);

} // namespace ostrel::test
