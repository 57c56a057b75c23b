#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cppmicroservices::detail::core {

/// The pattern of Bundle::FindResources(): texts that must follow one another in a name, with a '*' between each two.
/// Neither the first nor the last is bound to the name's ends, so that "txt" matches "a.txt.gz"; the empty pattern
/// matches all names.
class NamePattern {
public:
    explicit NamePattern(std::string_view pattern);

    bool matches(std::string_view name) const;

private:
    std::vector<std::string> m_texts;
};

} // namespace cppmicroservices::detail::core
