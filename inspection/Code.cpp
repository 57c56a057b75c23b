#include "inspection/Code.h"

#include <array>
#include <cstddef>

namespace ostrel::inspection {
namespace {

struct Row {
    Code code;
    std::string_view text;
};

// In the order of the enumeration.
constexpr std::array rows{
    Row{Code::notABundle, "not-a-bundle"},
    Row{Code::unreadableFile, "unreadable-file"},
    Row{Code::truncatedLibrary, "truncated-library"},
    Row{Code::damagedArchive, "damaged-archive"},
    Row{Code::noManifest, "no-manifest"},
    Row{Code::folderWithoutManifest, "folder-without-manifest"},
    Row{Code::manifestSyntax, "manifest-syntax"},
    Row{Code::nestedTooDeep, "nested-too-deep"},
    Row{Code::noSymbolicName, "no-symbolic-name"},
    Row{Code::noComponentName, "no-component-name"},
    Row{Code::badVersion, "bad-version"},
    Row{Code::duplicateBundle, "duplicate-bundle"},
    Row{Code::otherFramework, "other-framework"},
    Row{Code::undefinedSymbol, "undefined-symbol"},
    Row{Code::libraryMissing, "library-missing"},
    Row{Code::activatorMissing, "activator-missing"},
    Row{Code::startThrows, "start-throws"},
    Row{Code::stopThrows, "stop-throws"},
    Row{Code::startHangs, "start-hangs"},
    Row{Code::stopHangs, "stop-hangs"},
    Row{Code::crashes, "crashes"},
    Row{Code::exits, "exits"},
};

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].code) != i) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder() && rows.size() == static_cast<std::size_t>(Code::exits) + 1);

} // namespace

std::string_view toText(Code code)
{
    return rows.at(static_cast<std::size_t>(code)).text;
}

const std::vector<Code>& allCodes()
{
    static const std::vector<Code> codes = [] {
        std::vector<Code> all;
        all.reserve(rows.size());
        for (const Row& row : rows) {
            all.push_back(row.code);
        }
        return all;
    }();
    return codes;
}

} // namespace ostrel::inspection
