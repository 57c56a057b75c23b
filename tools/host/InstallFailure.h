#pragma once

#include "Problem.h"

#include <cppmicroservices/BundleContext.h>

#include <string>
#include <vector>

namespace ostrel::host {

/// Every file of the directory that cannot be installed, in ascending order of file name. Empty when each can be by
/// itself.
///
/// @param directory  the beginning of what is shown as the file
/// @cost             installs the files of the directory one by one
std::vector<Problem::Text> filesThatFail(const cppmicroservices::BundleContext& context, const std::string& directory);

} // namespace ostrel::host
