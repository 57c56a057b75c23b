#pragma once

#include "inspection/Finding.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <optional>
#include <string>
#include <vector>

namespace ostrel::inspection {

/// What became of one file of a directory when it was to be installed: one of the three.
struct SurveyedFile {
    std::string path; ///< directory/name, as it is shown
    std::vector<cppmicroservices::Bundle> bundles;
    std::optional<Finding> fault;
    std::string passedOver; ///< why it holds no bundle

    // Of a faulty file with one bundle whose manifest can be read:
    std::optional<std::string> symbolicName;
    std::optional<std::string> version;
    std::optional<std::string> componentName;
};

struct Survey {
    std::vector<SurveyedFile> files; ///< in the order in which installBundles() installs them
    bool hasFolders = false;
};

/// Installs the files of a directory one by one, as installBundles() does with all of them, but goes on after one that
/// fails. No code of a bundle runs.
///
/// @throws std::system_error with its name when the directory cannot be listed; std::bad_alloc; what an invalid context
///         throws
/// @cost   of a file that is installed: what installBundles() costs; others are read once more
Survey survey(const cppmicroservices::BundleContext& context, const std::string& directory);

/// The path of a file in a directory.
std::string joined(const std::string& directory, const std::string& name);

} // namespace ostrel::inspection
