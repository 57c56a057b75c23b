#include "integration/concurrency/Operations.h"

#include <iostream>
#include <sstream>
#include <streambuf>

namespace ostrel::test {

namespace {

using us_container::FilterMap;

/// Keeps nothing, so that threads have nothing to share.
class Nowhere final : public std::streambuf {
    std::streamsize xsputn(const char* /*text*/, std::streamsize count) override { return count; }
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

Nowhere nowhere;

const FilterMap& conditions()
{
    static const FilterMap map{{"mode", {"batch", false}}, {"language", {"de", false}}};
    return map;
}

std::vector<Operation> bundleOperations()
{
    return {
        {"startBundle", [](const Subject& s, unsigned choice) { s.container.startBundle(s.bundleName(choice)); }},
        {"startBundlesOfList", [](const Subject& s, unsigned) { s.container.startBundles(s.bundleNames); }},
        {"startBundlesByFilter", [](const Subject& s, unsigned) { s.container.startBundles(conditions()); }},
        {"startAllBundles", [](const Subject& s, unsigned) { s.container.startAllBundles(); }},
        {"stopBundle", [](const Subject& s, unsigned choice) { s.container.stopBundle(s.bundleName(choice)); }},
        {"stopBundles", [](const Subject& s, unsigned) { s.container.stopBundles(s.bundleNames); }},
        {"stopAllBundles", [](const Subject& s, unsigned) { s.container.stopAllBundles(); }},
        {"restartBundle", [](const Subject& s, unsigned choice) { s.container.restartBundle(s.location(choice)); }},
        {"listManuallyLoadedBundles", [](const Subject& s, unsigned) { s.container.listManuallyLoadedBundles(); }},
        {"unload", [](const Subject& s, unsigned) { s.container.unload(); }},
        {"reload", [](const Subject& s, unsigned) { s.container.reload(); }},
    };
}

std::vector<Operation> serviceOperations()
{
    return {
        {"loadService", [](const Subject& s, unsigned choice) { s.container.loadService(s.serviceName(choice)); }},
        {"loadServicesOfList", [](const Subject& s, unsigned) { s.container.loadServices(s.serviceNames); }},
        {"loadServicesByFilter", [](const Subject& s, unsigned) { s.container.loadServices(conditions()); }},
        {"loadAllServices", [](const Subject& s, unsigned) { s.container.loadAllServices(); }},
        {"unloadService", [](const Subject& s, unsigned choice) { s.container.unloadService(s.serviceName(choice)); }},
        {"unloadServices", [](const Subject& s, unsigned) { s.container.unloadServices(s.serviceNames); }},
        {"unloadAllServices", [](const Subject& s, unsigned) { s.container.unloadAllServices(); }},
        {"listManuallyLoadedServices", [](const Subject& s, unsigned) { s.container.listManuallyLoadedServices(); }},
    };
}

template <typename Print>
auto intoStream(Print print)
{
    return [print](const Subject& subject, unsigned) {
        std::stringstream stream;
        print(subject, stream);
    };
}

std::vector<Operation> reportOperations()
{
    using Stream = std::stringstream;
    return {
        {"getMicroServicesString", [](const Subject& s, unsigned) { s.container.getMicroServicesString(); }},
        {"printAllBundlesToStream",
         intoStream([](const Subject& s, Stream& stream) { s.container.printAllBundles(stream); })},
        {"printAllServicesToStream",
         intoStream([](const Subject& s, Stream& stream) { s.container.printAllServices(stream); })},
        {"printBundleServicesToStream",
         intoStream([](const Subject& s, Stream& stream) { s.container.printBundleServices(stream, s.bundle); })},
        {"printServiceToStream", intoStream([](const Subject& s, Stream& stream) {
             auto service = s.service;
             s.container.printService(stream, service);
         })},
    };
}

std::vector<Operation> consoleOperations()
{
    return {
        {"printAllBundles", [](const Subject& s, unsigned) { s.container.printAllBundles(); }, true},
        {"printAllServices", [](const Subject& s, unsigned) { s.container.printAllServices(); }, true},
        {"printBundleProperties",
         [](const Subject& s, unsigned choice) { s.container.printBundleProperties(s.location(choice)); }, true},
        {"printBundleServicesAtLocation",
         [](const Subject& s, unsigned choice) { s.container.printBundleServices(s.location(choice), 2); }, true},
        {"printBundleServices", [](const Subject& s, unsigned) { s.container.printBundleServices(s.bundle, 2); }, true},
        {"printService",
         [](const Subject& s, unsigned) {
             auto service = s.service;
             s.container.printService(service);
         },
         true},
        {"printServiceProperties", [](const Subject& s, unsigned) { s.container.printServiceProperties(greeterName); },
         true},
    };
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Operation& operation)
{
    return stream << operation.name;
}

const std::vector<Operation>& allOperations()
{
    static const std::vector<Operation> operations = [] {
        std::vector<Operation> all;
        for (const auto& family : {bundleOperations(), serviceOperations(), reportOperations(), consoleOperations()}) {
            all.insert(all.end(), family.begin(), family.end());
        }
        return all;
    }();
    return operations;
}

SilentConsole::SilentConsole() : m_before(std::cout.rdbuf(&nowhere)) {}

SilentConsole::~SilentConsole()
{
    std::cout.rdbuf(m_before);
}

} // namespace ostrel::test
