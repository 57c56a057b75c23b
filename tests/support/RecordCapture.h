#pragma once

#include <boost/log/sinks/sink.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace ostrel::test {

/// One record as a host's sink sees it.
struct LogRecord {
    std::uint32_t severity;
    std::string message;
    std::string channel = "ostrel::us_container";

    friend bool operator==(const LogRecord& a, const LogRecord& b)
    {
        return a.severity == b.severity && a.message == b.message && a.channel == b.channel;
    }
    friend std::ostream& operator<<(std::ostream& stream, const LogRecord& record);
};

/// Keeps the library's records, in order, while it lives.
///
/// A sink of its own in the real Boost.Log core, which takes the records of channel "ostrel::us_container". At the end
/// it is removed and what tests may have changed is as before: the mask is restored, the core is enabled and has no
/// filter.
class RecordCapture {
public:
    RecordCapture();
    RecordCapture(const RecordCapture&) = delete;
    RecordCapture& operator=(const RecordCapture&) = delete;
    ~RecordCapture();

    /// All records so far.
    std::vector<LogRecord> records() const;
    /// Their texts alone.
    std::vector<std::string> messages() const;
    void clear();

    /// Called with each record once it is kept, without a lock, on the thread that writes it; may throw.
    void onRecord(std::function<void(const LogRecord&)> callback);

private:
    class Sink;
    boost::shared_ptr<Sink> m_sink;
    std::uint32_t m_maskBefore;
};

} // namespace ostrel::test
