#include "frame/TerminalWidth.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ostrel::host {

namespace {

std::size_t widthToldByEnvironment()
{
    const char* const columns = std::getenv("COLUMNS");
    const std::string_view text = columns == nullptr ? "" : columns;
    std::size_t width = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), width);
    const bool isNumber = !text.empty() && end.ec == std::errc{} && end.ptr == text.data() + text.size();
    return isNumber ? width : 80;
}

} // namespace

std::size_t terminalWidth()
{
    constexpr std::size_t least = 40;
    winsize size{};
    const bool told = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return std::max(least, told ? std::size_t{size.ws_col} : widthToldByEnvironment());
}

} // namespace ostrel::host
