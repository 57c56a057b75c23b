#include "cppmicroservices/AnyMap.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>

namespace cppmicroservices {

namespace {

// Not std::tolower: keys must not depend on the process's locale.
constexpr char folded(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

namespace detail {

std::size_t any_map_cihash::operator()(std::string const& key) const
{
    // The hash of the folded key, since the order of iteration follows from it and programs print whole maps. Keys are
    // short: their folded copies need no memory.
    const auto fold = [&key](char* to) { std::transform(key.begin(), key.end(), to, folded); };
    std::array<char, 64> usual{};
    if (key.size() <= usual.size()) {
        fold(usual.data());
        return std::hash<std::string_view>()({usual.data(), key.size()});
    }
    std::string copy(key.size(), '\0');
    fold(copy.data());
    return std::hash<std::string_view>()(copy);
}

bool any_map_ciequal::operator()(std::string const& l, std::string const& r) const
{
    return l.size() == r.size() &&
           std::equal(l.begin(), l.end(), r.begin(), [](char a, char b) { return folded(a) == folded(b); });
}

} // namespace detail

any_map::any_map(map_type type, std::initializer_list<value_type> l)
{
    switch (type) {
    case ORDERED_MAP:
        m_map.emplace<ORDERED_MAP>(l);
        break;
    case UNORDERED_MAP:
        m_map.emplace<UNORDERED_MAP>(l);
        break;
    case UNORDERED_MAP_CASEINSENSITIVE_KEYS:
        m_map.emplace<UNORDERED_MAP_CASEINSENSITIVE_KEYS>(l);
        break;
    default:
        throw std::logic_error("invalid map type");
    }
}

any_map::any_map(ordered_any_map const& m) : m_map(m) {}
any_map::any_map(ordered_any_map&& m) : m_map(std::move(m)) {}
any_map::any_map(unordered_any_map const& m) : m_map(m) {}
any_map::any_map(unordered_any_map&& m) : m_map(std::move(m)) {}
any_map::any_map(unordered_any_cimap const& m) : m_map(m) {}
any_map::any_map(unordered_any_cimap&& m) : m_map(std::move(m)) {}

any_map::any_map(any_map const& m) = default;
any_map::~any_map() = default;

any_map& any_map::operator=(any_map const& m)
{
    // By way of a copy: `m` may be a value inside of this map.
    return *this = any_map(m);
}

// clear() throws for kinds alone that no map has.
// NOLINTNEXTLINE(bugprone-exception-escape)
any_map::any_map(any_map&& m) noexcept : m_map(std::move(m.m_map))
{
    m.clear();
}

// NOLINTNEXTLINE(bugprone-exception-escape): as above
any_map& any_map::operator=(any_map&& m) noexcept
{
    if (this != &m) {
        // By way of a temporary: `m` may be a value inside of this map.
        storage taken(std::move(m.m_map));
        m.clear();
        m_map = std::move(taken);
    }
    return *this;
}

any_map::iter any_map::begin()
{
    switch (kind()) {
    case ORDERED_MAP:
        return iter(iter::position(std::in_place_index<1>, std::get<0>(m_map).begin()));
    case UNORDERED_MAP:
        return iter(iter::position(std::in_place_index<2>, std::get<1>(m_map).begin()));
    default:
        return iter(iter::position(std::in_place_index<3>, std::get<2>(m_map).begin()));
    }
}

any_map::const_iter any_map::begin() const
{
    switch (kind()) {
    case ORDERED_MAP:
        return const_iter(const_iter::position(std::in_place_index<1>, std::get<0>(m_map).begin()));
    case UNORDERED_MAP:
        return const_iter(const_iter::position(std::in_place_index<2>, std::get<1>(m_map).begin()));
    default:
        return const_iter(const_iter::position(std::in_place_index<3>, std::get<2>(m_map).begin()));
    }
}

any_map::const_iter any_map::cbegin() const
{
    return begin();
}

any_map::iter any_map::end()
{
    switch (kind()) {
    case ORDERED_MAP:
        return iter(iter::position(std::in_place_index<1>, std::get<0>(m_map).end()));
    case UNORDERED_MAP:
        return iter(iter::position(std::in_place_index<2>, std::get<1>(m_map).end()));
    default:
        return iter(iter::position(std::in_place_index<3>, std::get<2>(m_map).end()));
    }
}

any_map::const_iter any_map::end() const
{
    switch (kind()) {
    case ORDERED_MAP:
        return const_iter(const_iter::position(std::in_place_index<1>, std::get<0>(m_map).end()));
    case UNORDERED_MAP:
        return const_iter(const_iter::position(std::in_place_index<2>, std::get<1>(m_map).end()));
    default:
        return const_iter(const_iter::position(std::in_place_index<3>, std::get<2>(m_map).end()));
    }
}

any_map::const_iter any_map::cend() const
{
    return end();
}

bool any_map::empty() const
{
    return std::visit([](auto const& map) { return map.empty(); }, m_map);
}

any_map::size_type any_map::size() const
{
    return std::visit([](auto const& map) { return map.size(); }, m_map);
}

any_map::size_type any_map::count(key_type const& key) const
{
    return std::visit([&key](auto const& map) { return map.count(key); }, m_map);
}

void any_map::clear()
{
    std::visit([](auto& map) { map.clear(); }, m_map);
}

any_map::mapped_type& any_map::at(key_type const& key)
{
    return const_cast<mapped_type&>(static_cast<any_map const&>(*this).at(key));
}

any_map::mapped_type const& any_map::at(key_type const& key) const
{
    const auto found = find(key);
    if (found == end()) {
        throw std::out_of_range(kind() == ORDERED_MAP ? "map::at" : "unordered_map::at");
    }
    return found->second;
}

any_map::mapped_type& any_map::operator[](key_type const& key)
{
    return std::visit([&key](auto& map) -> mapped_type& { return map[key]; }, m_map);
}

any_map::mapped_type& any_map::operator[](key_type&& key)
{
    return std::visit([&key](auto& map) -> mapped_type& { return map[std::move(key)]; }, m_map);
}

std::pair<any_map::iterator, bool> any_map::insert(value_type const& value)
{
    return emplace(value);
}

any_map::const_iterator any_map::find(key_type const& key) const
{
    switch (kind()) {
    case ORDERED_MAP:
        return const_iter(const_iter::position(std::in_place_index<1>, std::get<0>(m_map).find(key)));
    case UNORDERED_MAP:
        return const_iter(const_iter::position(std::in_place_index<2>, std::get<1>(m_map).find(key)));
    default:
        return const_iter(const_iter::position(std::in_place_index<3>, std::get<2>(m_map).find(key)));
    }
}

any_map::size_type any_map::erase(key_type const& key)
{
    return std::visit([&key](auto& map) { return map.erase(key); }, m_map);
}

bool any_map::operator==(any_map const& rhs) const
{
    return m_map == rhs.m_map;
}

} // namespace cppmicroservices
