#include "bundle_checker/Report.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/Json.h"

namespace ostrel::bundle_checker {

bool writeFindings(std::ostream& out, std::string_view path, std::string_view text, const Findings& findings,
                   Strictness strictness)
{
    const std::string shownPath = escaped(path, path.size());
    bundle_reader::Position position;
    std::size_t reached = 0;
    bool failed = false;
    for (const Finding& finding : findings) {
        // From the last place on, so that many findings do not each cost a walk from the beginning.
        const auto step = bundle_reader::positionOf(text.substr(reached), finding.offset - reached);
        position.column = step.line == 1 ? position.column + step.column - 1 : step.column;
        position.line += step.line - 1;
        reached = finding.offset;

        const bool isError = finding.severity == Severity::error;
        const bool countsAsError = isError || strictness == Strictness::strict;
        failed = failed || countsAsError;
        out << shownPath << ':' << position.line << ':' << position.column << ": "
            << (countsAsError ? "error: " : "warning: ") << finding.text
            << (countsAsError && !isError ? " [OSTREL_STRICT_MANIFESTS]" : "") << '\n';
    }
    return failed;
}

} // namespace ostrel::bundle_checker
