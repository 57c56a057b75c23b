#include "inspection/Text.h"

#include "text/Escape.h"
#include "text/Nearest.h"

namespace ostrel::inspection {

std::string escaped(std::string_view text)
{
    return text::escaped(text, text.size());
}

std::string escapedLines(std::string_view text)
{
    std::string result;
    for (;;) {
        const std::size_t end = text.find('\n');
        result += escaped(text.substr(0, end));
        if (end == std::string_view::npos) {
            return result;
        }
        result += '\n';
        text.remove_prefix(end + 1);
    }
}

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& known)
{
    return text::nearest(word, known);
}

} // namespace ostrel::inspection
