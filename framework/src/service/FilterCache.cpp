#include "service/FilterCache.h"

#include <functional>

namespace cppmicroservices::detail::core {

namespace {

constexpr std::size_t longestKept = 512;

} // namespace

FilterCache::Place& FilterCache::placeOf(std::string const& text)
{
    return m_places[std::hash<std::string>()(text) % m_places.size()];
}

LDAPFilter FilterCache::find(std::string const& text)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const& place = placeOf(text);
    return place.text == text ? place.filter : LDAPFilter();
}

LDAPFilter FilterCache::parse(std::string const& text)
{
    LDAPFilter filter(text);
    if (text.size() <= longestKept) {
        std::lock_guard<std::mutex> const lock(m_mutex);
        auto& place = placeOf(text);
        place.text = text;
        place.filter = filter;
    }
    return filter;
}

} // namespace cppmicroservices::detail::core
