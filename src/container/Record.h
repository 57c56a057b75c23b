#pragma once

#include "container/DiagnosticLog.h"
#include "container/Messages.h"

#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_feature.hpp>

#include <cstddef>
#include <ostream>
#include <tuple>

namespace ostrel::us_container {

/// A message with its values, inserted piece by piece; only ever a temporary within one record statement.
template <std::size_t Values, typename... Pieces>
struct ComposedMessage {
    const messages::Message<Values>& message;
    std::tuple<const Pieces&...> values;

    friend std::ostream& operator<<(std::ostream& stream, const ComposedMessage& composed)
    {
        stream << composed.message.literals[0];
        std::apply(
            [&](const auto&... value) {
                std::size_t next = 0;
                ((stream << value << composed.message.literals[++next]), ...);
            },
            composed.values);
        return stream;
    }
};

template <std::size_t Values, typename... Pieces>
ComposedMessage<Values, Pieces...> compose(const messages::Message<Values>& message, const Pieces&... values)
{
    static_assert(sizeof...(Pieces) == Values, "a message takes exactly as many values as it has gaps");
    return {message, std::tie(values...)};
}

} // namespace ostrel::us_container

/// Writes one record: OSTREL_RECORD(messages::x, value…).
///
/// The values stand inside the record statement, so they are evaluated only when the mask has the message's bit, the
/// core is enabled and its filters want the record. If evaluating or inserting one throws, the record is dropped and
/// the exception goes on.
///
/// A macro, because no function can leave its arguments unevaluated.
#define OSTREL_RECORD(message, ...)                                                                                    \
    if ((::ostrel::us_container::diagnosticLog().enabledSeverities() & (message).severity) == 0) {                     \
    } else                                                                                                             \
        BOOST_LOG_STREAM_SEV(::ostrel::us_container::diagnosticLog(), (message).severity)                              \
            << ::ostrel::us_container::compose(message, __VA_ARGS__)
