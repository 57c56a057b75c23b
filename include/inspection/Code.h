#pragma once

#include "inspection/Export.h"

#include <string_view>
#include <vector>

namespace ostrel::inspection {

/// What can be wrong with a bundle or a file, as findings, plans and messages name it; docs/findings.md tells of each
/// what it is, why, and how to mend it.
enum class Code {
    // Seen in the file, without running any of its code:
    notABundle,
    unreadableFile,
    truncatedLibrary,
    damagedArchive,
    noManifest,
    folderWithoutManifest,
    manifestSyntax,
    nestedTooDeep,
    noSymbolicName,
    noComponentName,
    badVersion,
    duplicateBundle,
    otherFramework,
    // Seen when it runs:
    undefinedSymbol,
    libraryMissing,
    activatorMissing,
    startThrows,
    stopThrows,
    startHangs,
    stopHangs,
    crashes,
    exits,
};

/// "not-a-bundle" and so on.
OSTREL_INSPECTION_EXPORT std::string_view toText(Code code);

/// Each once, in the order of the enumeration.
OSTREL_INSPECTION_EXPORT const std::vector<Code>& allCodes();

} // namespace ostrel::inspection
