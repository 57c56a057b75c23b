#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {

namespace {

std::size_t indexOf(std::string const& segment, std::size_t size)
{
    const int index = std::stoi(segment);
    // Negative indexes count from the end; one before the first wraps around and so is out of range as well.
    return index < 0 ? size + static_cast<std::size_t>(index) : static_cast<std::size_t>(index);
}

} // namespace

AnyMap::AnyMap(std::initializer_list<any_map::value_type> l) : any_map(UNORDERED_MAP_CASEINSENSITIVE_KEYS, l) {}
AnyMap::AnyMap(map_type type, std::initializer_list<any_map::value_type> l) : any_map(type, l) {}
AnyMap::AnyMap(ordered_any_map const& m) : any_map(m) {}
AnyMap::AnyMap(ordered_any_map&& m) : any_map(std::move(m)) {}
AnyMap::AnyMap(unordered_any_map const& m) : any_map(m) {}
AnyMap::AnyMap(unordered_any_map&& m) : any_map(std::move(m)) {}
AnyMap::AnyMap(unordered_any_cimap const& m) : any_map(m) {}
AnyMap::AnyMap(unordered_any_cimap&& m) : any_map(std::move(m)) {}

AnyMap::map_type AnyMap::GetType() const
{
    return kind();
}

AnyMap::mapped_type const& AnyMap::AtCompoundKey(key_type const& key) const
{
    auto dot = key.find('.');
    if (dot == std::string::npos) {
        return at(key);
    }
    std::string segment = key.substr(0, dot);
    mapped_type const* value = &at(segment);
    while (dot != std::string::npos) {
        const auto begin = dot + 1;
        dot = key.find('.', begin);
        std::string next = key.substr(begin, dot == std::string::npos ? dot : dot - begin);
        if (auto const* const map = any_cast<AnyMap>(value)) {
            value = &map->at(next);
        } else if (auto const* const list = any_cast<std::vector<Any>>(value)) {
            value = &list->at(indexOf(next, list->size()));
        } else {
            throw std::invalid_argument("Unsupported Any type at '" + segment + "' for dotted get");
        }
        segment = std::move(next);
    }
    return *value;
}

AnyMap::mapped_type AnyMap::AtCompoundKey(key_type const& key, mapped_type defaultValue) const noexcept
{
    try {
        return AtCompoundKey(key);
    } catch (...) {
        return defaultValue;
    }
}

} // namespace cppmicroservices
