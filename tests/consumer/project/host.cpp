#include "Greeting.h"

#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <boost/log/utility/setup/console.hpp>

#include <chrono>
#include <container/DiagnosticLog.h>
#include <container/MicroServicesContainer.h>
#include <inspection/FilterExplanation.h>
#include <iostream>
#include <stdexcept>

namespace {

void run(const cppmicroservices::BundleContext& context, const char* directory)
{
    namespace us = ostrel::us_container;
    us::MicroServicesContainer container{context, ostrel::platform::Utf16Path{ostrel::platform::toUtf16(directory)}};
    const us::FilterMap conditions;
    if (!ostrel::inspection::explainFilter(cppmicroservices::Any{}, conditions).admitted) {
        throw std::runtime_error{"what declares nothing is not admitted"};
    }
    container.startBundles(conditions);
    container.loadServices(conditions);
    if (container.listManuallyLoadedBundles().size() != 1 || container.listManuallyLoadedServices().size() != 1) {
        throw std::runtime_error{"expected one bundle and one service, but there is:\n" +
                                 container.getMicroServicesString()};
    }
    auto user = context;
    const auto greeting = user.GetService(user.GetServiceReference<consumer::Greeting>());
    std::cout << "consumer: " << greeting->text() << "\n";
}

} // namespace

int main(int argc, char** argv)
try {
    boost::log::add_console_log(std::cerr);
    ostrel::us_container::diagnosticLog().setEnabledSeverities(~0U);
    auto framework = cppmicroservices::FrameworkFactory().NewFramework();
    framework.Start();
    run(framework.GetBundleContext(), argc > 1 ? argv[1] : ".");
    framework.Stop();
    framework.WaitForStop(std::chrono::milliseconds::zero());
    return 0;
} catch (const std::exception& error) {
    std::cerr << "consumer: " << error.what() << "\n";
    return 1;
}
