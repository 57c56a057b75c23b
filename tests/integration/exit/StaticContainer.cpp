// A program, not a test of its own: its container has static storage, so it unloads while the process ends, and the
// bundle that it started writes a record by failing to stop. What arrived in the sink is printed last.
//
// The argument says how the process ends; see ExitTest.cpp.
#include "container/MicroServicesContainer.h"
#include "platform/Utf16Path.h"
#include "support/BundleScript.h"
#include "support/RecordCapture.h"
#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <thread>

namespace {

using namespace ostrel::test;
using cppmicroservices::Framework;
using ostrel::us_container::MicroServicesContainer;

Framework& startedFramework()
{
    // Never destroyed: what a framework does when it goes inside of a bundle's Stop() is not the matter here.
    static auto& framework = *new Framework{cppmicroservices::FrameworkFactory{}.NewFramework()};
    framework.Start();
    return framework;
}

// Each goes before those above it.
RecordCapture sink;
TemporaryDirectory directory;
Framework& framework = startedFramework();
BundleScript script{framework.GetBundleContext()};

struct Printer {
    ~Printer()
    {
        for (const std::string& message : sink.messages()) {
            std::cerr << withoutFolder(message) << '\n';
        }
    }

    static std::string withoutFolder(std::string text)
    {
        const std::string folder = directory.path().string() + "/";
        for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) {
            text.erase(at, folder.size());
        }
        return text;
    }
} printer;

MicroServicesContainer container{framework.GetBundleContext(),
                                 ostrel::platform::Utf16Path{directory.path().u16string()}};

std::string add(const std::string& target)
{
    const std::filesystem::path file = testBundle(target);
    std::filesystem::copy_file(file, directory.path() / file.filename());
    return file.filename();
}

} // namespace

int main(int count, char** arguments)
{
    const std::string end = count > 1 ? arguments[1] : "";
    container.startBundle(add("stop_throws"));
    if (end == "without an earlier record") {
        return EXIT_SUCCESS;
    }
    container.startBundle("absent.so");
    if (end == "after an earlier record") {
        return EXIT_SUCCESS;
    }

    script.on("stop alpha", [](auto) { std::exit(EXIT_SUCCESS); });
    auto context = framework.GetBundleContext();
    const std::string name = add("alpha");
    if (end == "exit in Stop, called by the container") {
        container.startBundle(name);
        container.stopBundle(name);
    }
    auto alpha = context.InstallBundles((directory.path() / name).string()).at(0);
    alpha.Start();
    if (end == "exit in Stop, called by the host") {
        alpha.Stop();
    }
    if (end == "exit in Stop, on another thread") {
        std::thread{[&alpha] { alpha.Stop(); }}.join();
    }
    return EXIT_FAILURE; // none of the ends above came to pass
}
