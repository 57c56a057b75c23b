#include <cppmicroservices/BundleActivator.h>

#include <atomic>
#include <iostream>
#include <thread>

namespace {

/// Fault: a thread of its own prints to std::cout all the time.
class PrintsInThread final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override
    {
        m_thread = std::thread{[this] {
            while (!m_stopped) {
                // Unformatted: formatted output would use up the column width that the report has just asked for.
                std::cout.write("noise\n", 6).flush();
                m_printed = true;
            }
        }};
        while (!m_printed) {
            std::this_thread::yield();
        }
    }

    void Stop(cppmicroservices::BundleContext) override
    {
        m_stopped = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_printed{false};
    std::atomic<bool> m_stopped{false};
    std::thread m_thread;
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(PrintsInThread)
