#include "frame/Remarks.h"

#include <inspection/Text.h>
#include <string>

namespace ostrel::host {

void Remarks::write(const char* kind, std::string_view text) const
{
    if (m_level != LogLevel::none) {
        m_stream << std::string{"ostrel-host: "} + kind + ": " + inspection::escaped(text) + "\n" << std::flush;
    }
}

} // namespace ostrel::host
