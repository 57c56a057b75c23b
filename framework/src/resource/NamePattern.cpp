#include "resource/NamePattern.h"

#include <algorithm>
#include <cstddef>

namespace cppmicroservices::detail::core {

NamePattern::NamePattern(std::string_view pattern)
{
    while (!pattern.empty()) {
        auto const length = std::min(pattern.find('*'), pattern.size());
        if (length != 0) {
            m_texts.emplace_back(pattern.substr(0, length));
        }
        pattern.remove_prefix(std::min(length + 1, pattern.size()));
    }
}

bool NamePattern::matches(std::string_view name) const
{
    for (auto const& text : m_texts) {
        auto const at = name.find(text);
        if (at == std::string_view::npos) {
            return false;
        }
        name.remove_prefix(at + text.size());
    }
    return true;
}

} // namespace cppmicroservices::detail::core
