#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace ostrel::test {

/// A manifest of a bundle "alpha", and what the checker says of it.
struct ManifestRow {
    /// Who agrees with the checker. A framework agrees when it refuses what has an error and takes all else; the schema
    /// when it refuses whatever has a finding.
    enum Agreement {
        all,
        exceptFrameworks,   ///< the checker refuses what both frameworks take
        exceptInstalledOne, ///< so, and the embedded framework refuses it as well
        exceptSchema,       ///< no schema can tell
        exceptFrameworksAndSchema,
    };

    std::string name; ///< of the row: a C identifier
    std::string text;
    std::vector<std::string> findings; ///< all of them as they are written, without the path: "5:12: error: …"
    Agreement agreement = all;
};

/// A manifest without fault, but for what is added behind its last value, which is in line 3, columns 1 to 48.
std::string manifestWith(const std::string& addition);

/// A manifest without fault but for these filters, which begin in line 5, column 23.
std::string manifestWithFilters(const std::string& filters);

/// A manifest without fault but for this version, which begins in line 1, column 54.
std::string manifestWithVersion(const std::string& version);

/// The rows of each file of the table.
std::vector<ManifestRow> syntaxRows();
std::vector<ManifestRow> textRows();
std::vector<ManifestRow> bundleRows();
std::vector<ManifestRow> componentRows();
std::vector<ManifestRow> filterRows();
std::vector<ManifestRow> droppedRows();

/// One of them, for a test with a parameter.
struct ManifestGroup {
    const char* name;
    std::vector<ManifestRow> (*rows)();
};

inline constexpr ManifestGroup manifestGroups[] = {
    {"Syntax", syntaxRows},           {"Texts", textRows},     {"BundleKeys", bundleRows},
    {"ComponentKeys", componentRows}, {"Filters", filterRows}, {"DroppedValues", droppedRows},
};

/// For GoogleTest.
std::ostream& operator<<(std::ostream& out, const ManifestGroup& group);

} // namespace ostrel::test
