#include "integration/concurrency/CallingBack.h"

#include <atomic>
#include <exception>
#include <sstream>

namespace ostrel::test {

namespace {

using us_container::MicroServicesContainer;

thread_local MicroServicesContainer* currentContainer = nullptr;
/// Calls back within calls back: an activator's may run another activator, and there it ends.
thread_local int depth = 0;

std::atomic<unsigned> calls{0};
std::atomic<int> greetersAlive{0};

template <typename Call>
void callBack(Call call) noexcept
{
    if (currentContainer == nullptr || depth == 2) {
        return;
    }
    ++depth;
    try {
        call(*currentContainer);
        ++calls;
    } catch (const std::exception&) {
        // A bundle or service may go meanwhile, by another thread.
    }
    --depth;
}

void useLittle(MicroServicesContainer& container)
{
    container.loadService(singerName);
    container.listManuallyLoadedServices();
    container.unloadService(singerName);
    container.listManuallyLoadedBundles();
}

} // namespace

CurrentContainer::CurrentContainer(MicroServicesContainer& container)
{
    currentContainer = &container;
}

CurrentContainer::~CurrentContainer()
{
    currentContainer = nullptr;
}

void callBackFrom(BundleScript& script, const std::vector<std::string>& fileNames)
{
    const auto onStep = [&script](const std::string& event, auto call) {
        script.on(event, [call](const auto&) { callBack(call); });
    };
    onStep("start alpha", [beta = fileNames[1]](MicroServicesContainer& container) {
        container.startBundle(beta);
        container.getMicroServicesString();
    });
    onStep("stop alpha", [beta = fileNames[1], gamma = fileNames[2]](MicroServicesContainer& container) {
        container.stopBundles(std::vector<std::string>{beta, gamma});
    });
    onStep("start beta", [](MicroServicesContainer& container) {
        container.loadServices(std::vector<std::string>{greeterName, singerName});
        container.loadAllServices();
    });
    onStep("stop beta", [gamma = fileNames[2]](MicroServicesContainer& container) {
        container.startBundle(gamma);
        container.unloadAllServices();
    });
    onStep("start gamma", useLittle);
    onStep("stop gamma", useLittle);
    for (const char* word : {"alpha", "beta", "gamma"}) {
        onStep(std::string{"get "} + word, useLittle);
        onStep(std::string{"release "} + word, useLittle);
    }
}

CallingGreeter::CallingGreeter()
{
    ++greetersAlive;
    callBack(useLittle);
}

CallingGreeter::~CallingGreeter()
{
    callBack(useLittle);
    --greetersAlive;
}

int CallingGreeter::alive()
{
    return greetersAlive;
}

unsigned timesCalledBack()
{
    return calls;
}

} // namespace ostrel::test
