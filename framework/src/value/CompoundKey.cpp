#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {

namespace {

std::size_t indexOf(std::string const& segment, std::size_t size)
{
    const int index = std::stoi(segment);
    // Negative indexes count from the end; one before the first wraps around and so is out of range as well.
    return index < 0 ? size + static_cast<std::size_t>(index) : static_cast<std::size_t>(index);
}

/// What a dot means that ends a key.
enum class LastDot {
    descends,           ///< as any other, to the key that is empty
    ignoredBehindIndex, ///< nothing behind the index of a vector: `v.0.` is `v.0`
};

Any const& valueAt(AnyMap const& map, std::string const& key, LastDot lastDot)
{
    auto dot = key.find('.');
    if (dot == std::string::npos) {
        return map.at(key);
    }
    std::string segment = key.substr(0, dot);
    Any const* value = &map.at(segment);
    while (dot != std::string::npos) {
        const auto begin = dot + 1;
        dot = key.find('.', begin);
        std::string next = key.substr(begin, dot == std::string::npos ? dot : dot - begin);
        if (auto const* const inner = any_cast<AnyMap>(value)) {
            value = &inner->at(next);
        } else if (auto const* const list = any_cast<std::vector<Any>>(value)) {
            value = &list->at(indexOf(next, list->size()));
            if (lastDot == LastDot::ignoredBehindIndex && dot != std::string::npos && dot + 1 == key.size()) {
                break;
            }
        } else {
            throw std::invalid_argument("Unsupported Any type at '" + segment + "' for dotted get");
        }
        segment = std::move(next);
    }
    return *value;
}

/// Whether a walk through maps alone ends at a key that is not there. Who asks with a default mostly asks for what may
/// be absent, and an exception for that would cost more than all the rest.
bool isAbsent(AnyMap const& map, std::string const& key)
{
    AnyMap const* inner = &map;
    for (std::size_t begin = 0; inner != nullptr;) {
        auto const dot = key.find('.', begin);
        auto const found = inner->find(key.substr(begin, dot == std::string::npos ? dot : dot - begin));
        if (found == inner->end()) {
            return true;
        }
        if (dot == std::string::npos) {
            return false;
        }
        begin = dot + 1;
        inner = any_cast<AnyMap>(&found->second);
    }
    return false;
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
    return valueAt(*this, key, LastDot::descends);
}

AnyMap::mapped_type AnyMap::AtCompoundKey(key_type const& key, mapped_type defaultValue) const noexcept
{
    try {
        return isAbsent(*this, key) ? defaultValue : valueAt(*this, key, LastDot::ignoredBehindIndex);
    } catch (...) {
        return defaultValue;
    }
}

} // namespace cppmicroservices
