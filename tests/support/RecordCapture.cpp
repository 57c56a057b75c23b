#include "support/RecordCapture.h"

#include "container/DiagnosticLog.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/expressions/message.hpp>
#include <boost/smart_ptr/make_shared_object.hpp>

#include <mutex>
#include <ostream>
#include <utility>

namespace ostrel::test {

namespace logging = boost::log;

std::ostream& operator<<(std::ostream& stream, const LogRecord& record)
{
    return stream << "{0x" << std::hex << record.severity << std::dec << ", \"" << record.message << "\", "
                  << record.channel << '}';
}

// The bare sink interface, not a frontend: a frontend would hold a lock of its own while onRecord() runs.
class RecordCapture::Sink final : public logging::sinks::sink {
public:
    Sink() : sink(/*cross_thread=*/false) {}

    bool will_consume(const logging::attribute_value_set& attributes) override
    {
        return logging::extract_or_default<std::string>("Channel", attributes, std::string{}) == "ostrel::us_container";
    }

    void consume(const logging::record_view& view) override
    {
        // 0 and "<none>" are no values of the library's: a record that lacks an attribute shows as one.
        LogRecord record{logging::extract_or_default<std::uint32_t>("Severity", view, 0U),
                         logging::extract_or_default<std::string>("Message", view, std::string{"<none>"}),
                         logging::extract_or_default<std::string>("Channel", view, std::string{"<none>"})};
        std::function<void(const LogRecord&)> callback;
        {
            const std::lock_guard lock{m_mutex};
            m_records.push_back(record);
            callback = m_callback;
        }
        if (callback) {
            callback(record);
        }
    }

    void flush() override {}

    std::vector<LogRecord> records() const
    {
        const std::lock_guard lock{m_mutex};
        return m_records;
    }

    void clear()
    {
        const std::lock_guard lock{m_mutex};
        m_records.clear();
    }

    void setCallback(std::function<void(const LogRecord&)> callback)
    {
        const std::lock_guard lock{m_mutex};
        m_callback = std::move(callback);
    }

private:
    mutable std::mutex m_mutex;
    std::vector<LogRecord> m_records;
    std::function<void(const LogRecord&)> m_callback;
};

RecordCapture::RecordCapture()
    : m_sink(boost::make_shared<Sink>()), m_maskBefore(ostrel::us_container::diagnosticLog().enabledSeverities())
{
    logging::core::get()->add_sink(m_sink);
}

RecordCapture::~RecordCapture()
{
    logging::core::get()->remove_sink(m_sink);
    logging::core::get()->reset_filter();
    logging::core::get()->set_logging_enabled(true);
    ostrel::us_container::diagnosticLog().setEnabledSeverities(m_maskBefore);
}

std::vector<LogRecord> RecordCapture::records() const
{
    return m_sink->records();
}

std::vector<std::string> RecordCapture::messages() const
{
    std::vector<std::string> texts;
    for (const LogRecord& record : m_sink->records()) {
        texts.push_back(record.message);
    }
    return texts;
}

void RecordCapture::clear()
{
    m_sink->clear();
}

void RecordCapture::onRecord(std::function<void(const LogRecord&)> callback)
{
    m_sink->setCallback(std::move(callback));
}

} // namespace ostrel::test
