#pragma once

#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices::detail::ldap {

/// Looks values up in a map for a filter. The results point into the map; nothing is allocated.
class MapAccess {
public:
    /// The value of `key`, its case disregarded whatever the map's kind; null when there is none.
    ///
    /// @cost  one look-up for a map with case-insensitive keys, linear for the others
    static const Any* findIgnoringCase(const any_map& map, const std::string& key);

    /// The value whose key is spelt exactly as `key`; null when there is none.
    static const Any* findExactly(const any_map& map, const std::string& key);

    /// @throws std::runtime_error when two keys of the map differ by case only.
    static void checkVariants(const any_map& map);
};

} // namespace cppmicroservices::detail::ldap
