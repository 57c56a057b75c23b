// text_polish BUNDLES LANGUAGE [MODE]: polishes standard input with the bundles that admit the language and the mode.

#include <platform/Utf16Path.h>

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <boost/core/null_deleter.hpp>
#include <boost/log/core.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>
#include <boost/make_shared.hpp>

#include <chrono>
#include <container/DiagnosticLog.h>
#include <container/MicroServicesContainer.h>
#include <dlfcn.h>
#include <exception>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <text/Services.h>

namespace {

using cppmicroservices::Any;
using ostrel::us_container::FilterMap;

/// Records go to standard error; without any sink Boost.Log would write them to standard output.
void logToStandardError()
{
    namespace sinks = boost::log::sinks;
    auto backend = boost::make_shared<sinks::text_ostream_backend>();
    backend->add_stream(boost::shared_ptr<std::ostream>{&std::cerr, boost::null_deleter{}});
    boost::log::core::get()->add_sink(
        boost::make_shared<sinks::synchronous_sink<sinks::text_ostream_backend>>(backend));
    ostrel::us_container::diagnosticLog().setEnabledSeverities(0x300); // problems only
}

void polish(cppmicroservices::BundleContext context, const std::string& directory, const FilterMap& conditions)
{
    using ostrel::platform::toUtf16;
    using ostrel::platform::Utf16Path;
    ostrel::us_container::MicroServicesContainer container{context, Utf16Path{toUtf16(directory)}};
    container.startBundles(conditions);
    container.loadServices(conditions);

    const auto pipeline = context.GetServiceReference<text::Pipeline>();
    if (!pipeline) {
        throw std::runtime_error{"no bundle in '" + directory + "' polishes this language"};
    }
    const std::string input{std::istreambuf_iterator<char>{std::cin}, {}};
    const std::string output = context.GetService(pipeline)->polish(input);
    std::cout << output << std::flush;

    if (const auto statistics = context.GetServiceReference<text::Statistics>()) {
        const text::Counts counts = context.GetService(statistics)->count(output);
        std::cerr << counts.lines << " lines, " << counts.words << " words, " << counts.bytes << " bytes\n";
    }
} // the container lets go of the services and stops the bundles, before the framework stops

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 4) {
        std::cerr << "usage: text_polish BUNDLES LANGUAGE [MODE]\n";
        return 2;
    }
    try {
        logToStandardError();
        // With RTLD_NOW a bundle that lacks a symbol fails to start, instead of ending the process later.
        auto framework = cppmicroservices::FrameworkFactory().NewFramework(cppmicroservices::FrameworkConfiguration{
            {cppmicroservices::Constants::LIBRARY_LOAD_OPTIONS, Any{static_cast<int>(RTLD_NOW)}}});
        framework.Start();
        polish(framework.GetBundleContext(), argv[1],
               FilterMap{{"language", {argv[2], false}}, {"mode", {argc == 4 ? argv[3] : "batch", false}}});
        framework.Stop();
        framework.WaitForStop(std::chrono::milliseconds::zero());
        return std::cout ? 0 : 1;
    } catch (const std::exception& e) {
        std::cerr << "text_polish: " << e.what() << '\n';
        return 1;
    }
}
