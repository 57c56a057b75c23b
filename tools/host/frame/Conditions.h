#pragma once

#include <container/MicroServicesContainer.h>
#include <string>
#include <vector>

namespace ostrel::host {

/// The host's conditions from the values of --when and --require, each "NAME=VALUE". VALUE may be empty and may contain
/// "="; NAME ends at the first one.
///
/// @throws Problem (usage) if a value has no "=", an empty NAME, or a NAME that was given before, by either option
ostrel::us_container::FilterMap parseConditions(const std::vector<std::string>& when,
                                                const std::vector<std::string>& require);

} // namespace ostrel::host
