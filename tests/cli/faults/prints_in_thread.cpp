#include <cppmicroservices/BundleActivator.h>

#include <array>
#include <atomic>
#include <iostream>
#include <thread>

namespace {

/// Fault: threads of its own print to std::cout all the time.
class PrintsInThread final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override
    {
        for (std::thread& thread : m_threads) {
            thread = std::thread{[this] {
                while (!m_stopped) {
                    // Unformatted: formatted output would use up the column width that the report has just asked for.
                    std::cout.write("noise\n", 6).flush();
                    m_printed = true;
                }
            }};
        }
        while (!m_printed) {
            std::this_thread::yield();
        }
    }

    void Stop(cppmicroservices::BundleContext) override
    {
        m_stopped = true;
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }

private:
    std::atomic<bool> m_printed{false};
    std::atomic<bool> m_stopped{false};
    std::array<std::thread, 4> m_threads;
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(PrintsInThread)
