#pragma once

#include "cppmicroservices/LDAPFilter.h"

#include <array>
#include <mutex>
#include <string>

namespace cppmicroservices::detail::core {

/// Filters that were parsed a short while ago, by their texts. All functions may be called from any thread.
///
/// Each text has one place, which the last text that came to it holds. So the memory is bounded, and a host that asks
/// for ever new ids does no more than parse each.
class FilterCache {
public:
    /// The filter, or one that is false when it is not here.
    LDAPFilter find(std::string const& text);

    /// Parses the text, and keeps the filter unless the text is very long.
    ///
    /// @throws std::invalid_argument for a malformed filter
    LDAPFilter parse(std::string const& text);

private:
    struct Place {
        std::string text;
        LDAPFilter filter;
    };

    Place& placeOf(std::string const& text);

    std::mutex m_mutex; // guards all below
    std::array<Place, 64> m_places;
};

} // namespace cppmicroservices::detail::core
