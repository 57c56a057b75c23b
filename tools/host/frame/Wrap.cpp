#include "frame/Wrap.h"

#include <algorithm>
#include <sstream>

namespace ostrel::host {

namespace {

std::size_t hangingIndentOf(const std::string& line)
{
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t gap = line.find("  ", begin);
    return gap == std::string::npos ? begin : std::min(line.find_first_not_of(' ', gap), line.size());
}

std::string wrappedLine(const std::string& line, std::size_t width)
{
    const std::size_t indent = hangingIndentOf(line);
    std::string done;
    std::string rest = line;
    while (rest.size() > width) {
        // A word that is longer than the line stays whole.
        std::size_t end = rest.rfind(' ', width);
        if (end == std::string::npos || end <= indent) {
            end = rest.find(' ', indent);
        }
        if (end == std::string::npos) {
            break;
        }
        done += rest.substr(0, end) + '\n';
        rest = std::string(indent, ' ') + rest.substr(end + 1);
    }
    return done + rest + '\n';
}

} // namespace

std::string wrapped(const std::string& text, std::size_t width)
{
    std::istringstream lines{text};
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        result += wrappedLine(line, width);
    }
    return result;
}

} // namespace ostrel::host
