#include "frame/ReportOutput.h"

#include <inspection/Text.h>

namespace ostrel::host {

void writeReport(Streams& io, const std::string& report)
{
    io.out << (io.out.isTerminal() ? inspection::escapedLines(report) : report) << std::flush;
}

} // namespace ostrel::host
