#include "hosting/DiagnosticOutput.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/make_shared.hpp>

#include <container/DiagnosticLog.h>
#include <cstdint>
#include <inspection/Text.h>
#include <string>

namespace ostrel::host {

namespace {

using ostrel::us_container::diagnosticLog;

constexpr std::uint32_t decision = 0x8;
constexpr std::uint32_t notice = 0x10;
constexpr std::uint32_t malformed = 0x100;
constexpr std::uint32_t failure = 0x200;

std::uint32_t maskOf(LogLevel level)
{
    switch (level) {
    case LogLevel::none:
        return 0;
    case LogLevel::problems:
        return malformed | failure;
    case LogLevel::decisions:
        return malformed | failure | decision;
    case LogLevel::all:
        break;
    }
    return ~std::uint32_t{0};
}

std::string nameOf(std::uint32_t severity)
{
    switch (severity) {
    case decision:
        return "decision";
    case notice:
        return "notice";
    case malformed:
        return "malformed filter";
    case failure:
        return "failure";
    default:
        return "record";
    }
}

} // namespace

class DiagnosticOutput::Backend final
    : public boost::log::sinks::basic_formatted_sink_backend<char, boost::log::sinks::synchronized_feeding> {
public:
    Backend(DiagnosticOutput& owner, std::ostream& stream) : m_owner(owner), m_stream(stream) {}

    void consume(const boost::log::record_view& record, const std::string& message)
    {
        const auto severity = boost::log::extract_or_default<std::uint32_t>("Severity", record, 0U);
        if (m_owner.m_unloading && (severity & (notice | failure)) != 0) {
            m_owner.m_unloadProblems.push_back(message);
        }
        if ((severity & maskOf(m_owner.m_level)) != 0) {
            // In one piece, so that what bundles print on other threads comes before or behind it.
            m_stream << nameOf(severity) + (": " + inspection::escaped(message)) + "\n" << std::flush;
        }
    }

private:
    DiagnosticOutput& m_owner;
    std::ostream& m_stream;
};

DiagnosticOutput::DiagnosticOutput(LogLevel level, std::ostream& stream) : m_level(level)
{
    namespace expr = boost::log::expressions;
    auto sink =
        boost::make_shared<boost::log::sinks::synchronous_sink<Backend>>(boost::make_shared<Backend>(*this, stream));
    sink->set_filter(expr::attr<std::string>("Channel") == "ostrel::us_container");
    sink->set_formatter(expr::stream << expr::smessage);
    boost::log::core::get()->add_sink(sink);
    m_sink = sink;
    diagnosticLog().setEnabledSeverities(maskOf(level));
}

DiagnosticOutput::~DiagnosticOutput()
{
    diagnosticLog().setEnabledSeverities(0);
    boost::log::core::get()->remove_sink(m_sink);
}

void DiagnosticOutput::beginUnload()
{
    m_unloading = true;
    diagnosticLog().setEnabledSeverities(maskOf(m_level) | notice | failure);
}

} // namespace ostrel::host
