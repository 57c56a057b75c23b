// All public operations from eight threads on two containers over one framework, while bundles and services call back.
#include "integration/concurrency/CallingBack.h"
#include "integration/concurrency/Operations.h"
#include "process/RunningFramework.h"
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <random>
#include <thread>

namespace ostrel::test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using Names = std::vector<std::string>;

constexpr unsigned threads = 8;
constexpr unsigned rounds = 5;

/// CppMicroServices 3.8.4 forgets an object that its factory makes just while the service goes.
bool everyObjectIsGivenBack()
{
    return ostrel::process::runningFramework() == ostrel::bundle_reader::Framework::embedded;
}

const std::string wordName = "ostrel::test::Word";
const std::string wordFilter = "(test.word=*)";

/// One of the containers takes bundles from the directory. The other has no directory: its names are whole paths, so
/// that a bundle's name is its location, and it is restarted under it.
class Stress : public HostFixture {
protected:
    Stress()
    {
        for (const char* bundle : {"alpha", "beta", "gamma"}) {
            fileNames.push_back(host.add(bundle));
            locations.push_back(host.locationOf(fileNames.back()));
        }
        whole.startAllBundles();
        bundle = host.bundleIn(fileNames.back());
        plain =
            ServiceReferenceU{host.context().RegisterService<Singer>(std::make_shared<PlainSinger>()).GetReference()};
        registerFactory<Greeter>(host.context(), [] {
            return cppmicroservices::MakeInterfaceMap<Greeter>(std::make_shared<CallingGreeter>());
        });
        callBackFrom(script, fileNames);
    }

    struct PlainSinger final : Singer {};

    Subject subjectOf(us_container::MicroServicesContainer& container) const
    {
        return {container, &container == &pathless ? locations : fileNames, locations, serviceNames, bundle, plain};
    }

    /// Every operation some times in an order of the thread's own, on either container.
    void work(unsigned seed)
    {
        std::mt19937 random{seed};
        std::vector<std::size_t> order(allOperations().size());
        for (unsigned round = 0; round < rounds; ++round) {
            for (std::size_t i = 0; i < order.size(); ++i) {
                order[i] = i;
            }
            std::shuffle(order.begin(), order.end(), random);
            for (const std::size_t next : order) {
                run(next, random() % 2 == 0 ? whole : pathless, random());
            }
            liveShortly(round);
        }
    }

    void run(std::size_t index, us_container::MicroServicesContainer& container, unsigned choice)
    {
        const Operation& operation = allOperations()[index];
        const CurrentContainer current{container};
        // The lines of std::cout, and its column widths, belong to the process: only one may print at a time.
        const auto turn = operation.printsToConsole ? std::unique_lock{console} : std::unique_lock<std::mutex>{};
        try {
            operation.run(subjectOf(container), choice);
            ++completed[index];
        } catch (const std::exception&) {
            // A bundle or service may go between two steps of an operation, by the other container.
        }
    }

    /// A third container comes and goes.
    void liveShortly(unsigned round)
    {
        try {
            const Names bundles{fileNames[round % fileNames.size()]};
            us_container::MicroServicesContainer shortLived{host.context(), host.bundleDirectory(), bundles,
                                                            Names{singerName}};
            const CurrentContainer current{shortLived};
            shortLived.loadService(greeterName);
            ++lives;
        } catch (const std::exception&) {
            // as above
        }
    }

    void workInParallel()
    {
        std::vector<std::thread> workers;
        for (unsigned seed = 0; seed < threads; ++seed) {
            workers.emplace_back([this, seed] { work(seed); });
        }
        for (std::thread& worker : workers) {
            worker.join();
        }
    }

    /// Also what is held without a recorded name, from loads of several services that ended half way. This time nothing
    /// calls back: an activator that starts another bundle while its own stops may start one that was stopped already.
    void unloadAll()
    {
        for (auto* container : {&whole, &pathless}) {
            container->unload();
            container->unloadServices(serviceNames);
        }
    }

    Names usersOfAllServices() const
    {
        Names users;
        for (const auto& reference : host.context().GetServiceReferences("", "")) {
            for (const std::string& user : usersOf(reference)) {
                users.push_back(user + " uses " + reference.GetProperty("objectclass").ToString());
            }
        }
        return users;
    }

    std::ptrdiff_t timesHappened(const std::string& what) const
    {
        const Names events = script.events();
        return std::count_if(events.begin(), events.end(),
                             [&](const std::string& event) { return event.rfind(what + " ", 0) == 0; });
    }

    BundleScript script{host.context()};
    RecordCapture log;
    us_container::MicroServicesContainer whole{host.context(), host.bundleDirectory()};
    us_container::MicroServicesContainer pathless{host.context(), platform::Utf16Path{u""}};
    Names fileNames;
    Names locations;
    const Names serviceNames{greeterName, singerName, wordName, wordFilter};
    cppmicroservices::Bundle bundle;
    ServiceReferenceU plain;
    SilentConsole silence;
    std::mutex console;
    std::vector<std::atomic<unsigned>> completed = std::vector<std::atomic<unsigned>>(allOperations().size());
    std::atomic<unsigned> lives{0};
};

TEST_F(Stress, GivenTwoContainersAndEightThreads_WhenAllIsUnloaded_ThenNothingIsHeldUsedOrActive)
{
    workInParallel();
    unloadAll();

    for (std::size_t i = 0; i < completed.size(); ++i) {
        EXPECT_GT(completed[i], 0U) << allOperations()[i].name;
    }
    EXPECT_GT(lives, 0U);
    for (const auto* container : {&whole, &pathless}) {
        EXPECT_THAT(container->listManuallyLoadedServices(), IsEmpty());
        EXPECT_THAT(container->listManuallyLoadedBundles(), Each(IsEmpty()));
    }
    EXPECT_THAT(usersOfAllServices(), IsEmpty());
    for (const std::string& file : fileNames) {
        EXPECT_EQ(host.bundleIn(file).GetState(), cppmicroservices::Bundle::STATE_RESOLVED) << file;
    }
    EXPECT_GT(timesCalledBack(), 0U);
    EXPECT_EQ(CallingGreeter::alive(), 0);
    EXPECT_EQ(timesHappened("start"), timesHappened("stop"));
    EXPECT_GE(timesHappened("get"), timesHappened("release"));
    if (everyObjectIsGivenBack()) {
        EXPECT_EQ(timesHappened("get"), timesHappened("release"));
    }
    EXPECT_THAT(log.messages(), Each(Not(HasSubstr("rror while"))));
}

} // namespace
} // namespace ostrel::test
