#pragma once

#include "inspection/FilterExplanation.h"
#include "inspection/Finding.h"
#include "inspection/Vocabulary.h"

#include <cppmicroservices/BundleContext.h>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::inspection {

/// What becomes of a bundle.
enum class Outcome {
    start,
    skip, ///< the conditions refuse it
    fail,
    notReached, ///< another one fails before anything is started
};

/// "start", "skip", "fail", "not-reached".
OSTREL_INSPECTION_EXPORT std::string_view toText(Outcome outcome);

struct PlannedBundle {
    std::string file;                        ///< directory/name
    std::optional<std::string> symbolicName; ///< these three: none where they cannot be read
    std::optional<std::string> version;
    std::optional<std::string> componentName;
    Outcome outcome = Outcome::fail;
    std::string reason;     ///< toText() of the Reason or Code; of what is not reached: what would have decided
    std::string text;       ///< the same in plain words, as what is said of the bundle
    std::string sha256;     ///< of the file, in hexadecimal digits; "" where it was not asked for or cannot be read
    std::optional<long> id; ///< of the bundle in the framework in which it was planned; no part of the JSON
};

/// What starting a directory by conditions will do.
struct Plan {
    Conditions conditions;
    bool keepGoing = false;             ///< one that fails does not keep the others from being started
    std::vector<PlannedBundle> bundles; ///< in order; of a file that cannot be installed there is one
    std::vector<PassedOver> passedOver;
    std::vector<Finding> findings; ///< why those that fail do
    Vocabulary vocabulary;         ///< of the declarations of all bundles that can be read
    bool hasFolders = false;       ///< the directory has directories in it, which are not entered
};

struct PlanOptions {
    bool keepGoing = false;
    bool hashes = false; ///< each file is read from its beginning to its end
};

/// Plans what `ostrel-host run` does, without running code of a bundle.
///
/// Files are installed one by one. Where one fails, or a bundle has no component name, nothing is started at all, as
/// long as `keepGoing` is not set; with it, all bundles of the file that fails are left out.
///
/// @param context    of a framework in which the files are installed
/// @param directory  bytes
/// @throws std::system_error with its name when the directory cannot be listed; std::bad_alloc; what an invalid context
///         throws
/// @locks  none
/// @cost   a little more than installing each file by itself, and with hashes the bytes of the files
OSTREL_INSPECTION_EXPORT Plan planDirectory(const cppmicroservices::BundleContext& context,
                                            const std::string& directory, const us_container::FilterMap& filterMap,
                                            const PlanOptions& options);

struct PlanSummary {
    std::size_t start = 0;
    std::size_t skip = 0;
    std::size_t fail = 0;
    std::size_t notReached = 0;
    std::map<std::string, std::size_t> reasons; ///< how many bundles there are of each
};

OSTREL_INSPECTION_EXPORT PlanSummary summaryOf(const Plan& plan);

/// "2 of 9 start; 6 refused: 4 value differs, 2 required attribute not named; 1 fails: no component name".
OSTREL_INSPECTION_EXPORT std::string inOneLine(const Plan& plan);

/// In lines, for people: escaped, so that no text of a bundle can pass for another line.
OSTREL_INSPECTION_EXPORT std::string toText(const Plan& plan);

/// ostrel.plan/1.
/// @param tool  who writes, with its version
OSTREL_INSPECTION_EXPORT std::string toJson(const Plan& plan, std::string_view tool);

/// The plan that toJson() wrote, without what differences() does not compare.
///
/// @throws std::runtime_error that says what is wrong with the text; std::bad_alloc
OSTREL_INSPECTION_EXPORT Plan readPlan(std::string_view json);

/// What has changed in a directory, one sentence for each file or bundle; empty when the plan holds.
///
/// Files are told by their names in the directory, however the directory itself is written. Those that are passed over
/// do not count.
///
/// @param now  with hashes, for the same conditions
OSTREL_INSPECTION_EXPORT std::vector<std::string> differences(const Plan& then, const Plan& now);

} // namespace ostrel::inspection
