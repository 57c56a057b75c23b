#pragma once

#include "inspection/FilterExplanation.h"
#include "inspection/Finding.h"
#include "inspection/Vocabulary.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReferenceBase.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::inspection {

enum class SubjectKind { bundle, service };

/// Why a bundle is started, or a service loaded, or not.
struct Subject {
    SubjectKind kind = SubjectKind::bundle;
    std::string name;             ///< component name, else symbolic name; of a service its id
    std::string file;             ///< of the bundle, or of the one that registered the service
    std::string bundle;           ///< the symbolic name of the same
    std::optional<bool> admitted; ///< none when the start ends instead, as there is no component name
    Reason reason = Reason::noDeclaration;
    std::string text; ///< the reason as a sentence about the subject, in plain words
    std::vector<std::string> hints;
    std::vector<Alternative> alternatives;
    std::optional<Conditions> change; ///< as FilterExplanation::change
};

/// What MicroServicesContainer::startBundles(filterMap) decides about an installed bundle. The file is its location.
///
/// @throws std::bad_alloc; std::runtime_error when the bundle is not valid
/// @locks  none
/// @logs   nothing
OSTREL_INSPECTION_EXPORT Subject explainBundle(const cppmicroservices::Bundle& bundle,
                                               const us_container::FilterMap& filterMap);

/// What MicroServicesContainer::loadServices(filterMap) decides about a service of a bundle that it started.
///
/// @throws std::bad_alloc, and what GetProperty throws
/// @locks  none
/// @logs   nothing
OSTREL_INSPECTION_EXPORT Subject explainService(const cppmicroservices::ServiceReferenceBase& service,
                                                const us_container::FilterMap& filterMap);

struct Explanation {
    Conditions conditions;
    std::vector<Subject> subjects;
    std::vector<Finding> findings;      ///< of files that cannot be explained, since they cannot be installed
    std::vector<PassedOver> passedOver; ///< files that hold no bundle
    Vocabulary vocabulary;              ///< of the declarations of these bundles
    bool hasFolders = false;            ///< the directory has directories in it, which are not entered
};

/// Explains each bundle of a directory, in the order in which they are started. Nothing is started.
///
/// Files are shown as `directory`/name. Beside what explainBundle() says there are hints about the manifest: what the
/// check at build time would have warned of.
///
/// @param context    of a framework in which the files are installed
/// @param directory  bytes
/// @throws std::system_error with its name when the directory cannot be listed; std::bad_alloc; what an invalid context
///         throws
/// @locks  none
OSTREL_INSPECTION_EXPORT Explanation explainDirectory(const cppmicroservices::BundleContext& context,
                                                      const std::string& directory,
                                                      const us_container::FilterMap& filterMap);

/// In lines, for people: escaped, so that no text of a bundle can pass for another line.
OSTREL_INSPECTION_EXPORT std::string toText(const Explanation& explanation);

/// ostrel.explanation/1.
/// @param tool  who writes, with its version
OSTREL_INSPECTION_EXPORT std::string toJson(const Explanation& explanation, std::string_view tool);

} // namespace ostrel::inspection
