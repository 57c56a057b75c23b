#include "frame/Findings.h"

namespace ostrel::host {

Problem problemOf(const std::vector<inspection::Finding>& findings)
{
    std::vector<Problem::Text> texts;
    texts.reserve(findings.size());
    for (const inspection::Finding& finding : findings) {
        texts.push_back({finding.what, finding.file, {finding.why}, finding.remedy, finding.code});
    }
    return {ExitStatus::bundle, std::move(texts)};
}

} // namespace ostrel::host
