// Threads that do everything at once, at random but for the seed, while bundles and in the end the framework stop.
#include "contract/robust/WildFixture.h"

#include <cppmicroservices/FrameworkFactory.h>

#include <atomic>
#include <random>
#include <thread>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

struct Counted {
    explicit Counted(std::atomic<long>& theLiving) : living(theLiving) { ++living; }
    Counted(Counted const&) = delete;
    Counted& operator=(Counted const&) = delete;
    ~Counted() { --living; }

    std::atomic<long>& living;
};

class Anything {
public:
    Anything(BundleContext context, std::vector<std::string> locations, std::atomic<long>& living, unsigned seed)
        : m_system(std::move(context)), m_locations(std::move(locations)), m_living(living), m_random(seed)
    {
    }

    void runUntil(std::atomic<bool> const& over)
    {
        while (!over) {
            try {
                step();
                ++done;
            } catch (std::runtime_error const&) {
                ++refused; // stopped, or waited for in a circle
            } catch (std::logic_error const&) {
                ++refused; // unregistered, uninstalled, or an invalid argument
            }
        }
    }

    long done = 0;
    long refused = 0;

private:
    unsigned pick(unsigned below) { return std::uniform_int_distribution<unsigned>(0, below - 1)(m_random); }

    Bundle anyBundle()
    {
        auto const all = m_system.GetBundles();
        return all.at(pick(static_cast<unsigned>(all.size())));
    }

    BundleContext anyContext()
    {
        auto context = anyBundle().GetBundleContext();
        return context ? context : m_system;
    }

    void step()
    {
        switch (pick(14)) {
        case 0:
            m_system.InstallBundles(m_locations.at(pick(static_cast<unsigned>(m_locations.size()))));
            break;
        case 1:
        case 2:
            anyBundle().Start();
            break;
        case 3:
            if (auto bundle = anyBundle(); bundle.GetBundleId() != 0) {
                bundle.Stop();
            }
            break;
        case 4:
            if (pick(8) == 0) {
                anyBundle().Uninstall();
            }
            break;
        case 5:
        case 6:
            m_registrations.push_back(
                anyContext().RegisterService<Counted>(std::make_shared<Counted>(m_living), {{"key", int(pick(5))}}));
            break;
        case 7:
            if (!m_registrations.empty()) {
                m_registrations.at(pick(static_cast<unsigned>(m_registrations.size())))
                    .SetProperties({{"key", int(pick(5))}, {"service.ranking", int(pick(3))}});
            }
            break;
        case 8:
            if (!m_registrations.empty()) {
                auto last = m_registrations.back();
                m_registrations.pop_back();
                last.Unregister();
            }
            break;
        case 9: {
            auto context = anyContext();
            if (auto const word = context.GetServiceReference<Word>()) {
                if (auto service = context.GetService(word)) {
                    EXPECT_FALSE(service->text().empty());
                    m_words.push_back(std::move(service));
                }
            }
            break;
        }
        case 10: {
            auto context = anyContext();
            for (auto const& reference : context.GetServiceReferences<Counted>("(key=3)")) {
                m_counted.push_back(context.GetService(reference));
            }
            break;
        }
        case 11:
            m_words.clear();
            break;
        case 12:
            m_counted.clear();
            break;
        default:
            for (auto const& bundle : m_system.GetBundles()) {
                bundle.GetRegisteredServices();
                bundle.GetServicesInUse();
            }
        }
    }

    BundleContext m_system;
    std::vector<std::string> m_locations;
    std::atomic<long>& m_living;
    std::mt19937 m_random;
    std::vector<ServiceRegistration<Counted>> m_registrations;
    std::vector<std::shared_ptr<Word>> m_words;
    std::vector<std::shared_ptr<Counted>> m_counted;
};

TEST(RandomThreads, leaveNothingBehind)
{
    std::atomic<long> living{0};
    for (unsigned round = 0; round < 4; ++round) {
        Host host;
        BundleScript script(host.context());
        std::vector<std::string> locations;
        for (std::string const target : {"wild", "wild_too", "alpha", "beta", "stop_throws", "start_throws"}) {
            locations.push_back(host.locationOf(host.add(target)));
        }
        script.on("stop wild", [](BundleContext own) {
            for (auto bundle : own.GetBundles(own.GetBundle().GetLocation() + "_too")) {
                bundle.Start();
            }
        });
        script.on("start wild_too", [&](BundleContext own) { own.InstallBundles(locations.at(0)).at(0).Stop(); });
        std::atomic<bool> over{false};
        std::vector<std::unique_ptr<Anything>> all;
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < 4; ++i) {
            all.push_back(std::make_unique<Anything>(host.context(), locations, living, 10 * round + i));
            threads.emplace_back([&over, each = all.back().get()] { each->runUntil(over); });
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        host.stop(); // they go on
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        over = true;
        for (auto& thread : threads) {
            thread.join();
        }
        for (auto const& each : all) {
            EXPECT_GT(each->done, 20);
            EXPECT_GT(each->refused, 0);
        }
    }
    EXPECT_EQ(0, living);
}

} // namespace
