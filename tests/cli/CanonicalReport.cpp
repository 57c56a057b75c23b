#include "cli/CanonicalReport.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace ostrel::test {

namespace {

std::string canonicalGroup(const std::string& text, std::size_t& at);

/// Up to the comma or bracket that ends the item.
std::string canonicalItem(const std::string& text, std::size_t& at)
{
    std::string item;
    while (at < text.size() && std::string{",]}"}.find(text[at]) == std::string::npos) {
        if (text[at] == '{' || text[at] == '[') {
            item += canonicalGroup(text, at);
        } else {
            item += text[at++];
        }
    }
    return item;
}

/// A rendered map or list, its brackets included.
std::string canonicalGroup(const std::string& text, std::size_t& at)
{
    const char open = text[at++];
    const char close = open == '{' ? '}' : ']';
    std::vector<std::string> items;
    while (at < text.size() && text[at] != close) {
        items.push_back(canonicalItem(text, at));
        at = std::min(text.find_first_not_of(", ", at), text.size());
    }
    ++at;
    std::sort(items.begin(), items.end());
    std::string group(1, open);
    for (const std::string& item : items) {
        group += (group.size() == 1 ? "" : ", ") + item;
    }
    return group + close;
}

std::string canonicalLine(const std::string& line)
{
    std::string result;
    for (std::size_t at = 0; at < line.size();) {
        result += canonicalItem(line, at);
        if (at < line.size()) {
            result += line[at++];
        }
    }
    return result;
}

std::size_t indentOf(const std::string& line)
{
    return std::min(line.find_first_not_of(' '), line.size());
}

/// The lines from `at` on that are indented by at least `indent`, as blocks of a line and what is below it.
std::string canonicalBlocks(const std::vector<std::string>& lines, std::size_t& at, std::size_t indent, bool sorted)
{
    std::vector<std::string> blocks;
    while (at < lines.size() && indentOf(lines[at]) >= indent) {
        const std::string& head = lines[at++];
        std::string block = canonicalLine(head) + "\n";
        const bool isService = head.find("Service id: ") != std::string::npos; // its parts have a promised order
        block += canonicalBlocks(lines, at, indentOf(head) + 1, !isService);
        blocks.push_back(std::move(block));
    }
    if (sorted) {
        std::sort(blocks.begin(), blocks.end());
    }
    std::string result;
    for (const std::string& block : blocks) {
        result += block;
    }
    return result;
}

} // namespace

std::string canonicalReport(const std::string& report)
{
    std::istringstream stream{report};
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::size_t at = 0;
    return canonicalBlocks(lines, at, 0, false);
}

} // namespace ostrel::test
