#pragma once

#include "cppmicroservices/FrameworkEvent.h"

#include <cstdint>
#include <exception>
#include <iosfwd>
#include <memory>
#include <mutex>
#include <string>

namespace cppmicroservices::core {

class BundleRecord;
class ServiceRecord;

enum class BundleChange : std::uint32_t {
    installed = 0x00000001,
    started = 0x00000002,
    stopped = 0x00000004,
    uninstalled = 0x00000010,
    resolved = 0x00000020,
    unresolved = 0x00000040,
    starting = 0x00000080,
    stopping = 0x00000100,
};

enum class ServiceChange : std::uint32_t {
    registered = 0x00000001,
    modified = 0x00000002,
    unregistering = 0x00000004,
};

/// The one place through which everything that happens in a framework passes, in the thread that causes it and with no
/// lock of the framework held: the place where listeners are to be called.
///
/// For now it writes the diagnostics of a framework whose property "org.cppmicroservices.framework.log" is true.
class Events {
public:
    /// @param log null: nothing is written
    explicit Events(std::ostream* log) : m_log(log) {}

    void publish(BundleChange change, BundleRecord const& bundle) noexcept;
    void publish(ServiceChange change, ServiceRecord const& service) noexcept;
    void publish(FrameworkEvent::Type type, std::shared_ptr<BundleRecord> const& bundle, std::string const& message,
                 std::exception_ptr const& exception = nullptr) noexcept;

    /// A remark that is no event.
    void note(std::string const& text) noexcept;

private:
    std::ostream* const m_log;
    std::mutex m_mutex; // guards what *m_log writes to; held while a line is written, and no other lock with it
};

} // namespace cppmicroservices::core
