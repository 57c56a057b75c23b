#pragma once

#include <inspection/Plan.h>
#include <string>

namespace ostrel::host {

/// Writes a file whole or not at all: under another name first. A device or a pipe is written to as it is.
///
/// @throws Problem (output) when that fails
void writeFile(const std::string& path, const std::string& content);

/// @throws Problem (usage) when the file cannot be read or holds no plan
inspection::Plan readPlanFile(const std::string& path);

/// @param then  the plan in the file at `path`
/// @throws Problem (answerIsNo) with each difference when the plan does not hold any more
void requireUnchanged(const std::string& path, const inspection::Plan& then, const inspection::Plan& now);

} // namespace ostrel::host
