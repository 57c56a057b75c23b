/// Checks the manifests of bundles for ostrel_add_bundle(): before they are packed, and against the library that they
/// were put into.
///
/// Findings go to standard error, one a line, as compilers write theirs.
/// Exit status: 0 when there are none or warnings alone, 1 when there are errors, 2 when the call is wrong.

#include "bundle_checker/LibraryCheck.h"
#include "bundle_checker/ManifestCheck.h"
#include "bundle_checker/Report.h"
#include "bundle_checker/Words.h"
#include "bundle_reader/BundleFile.h"
#include "bundle_reader/elf/Symbols.h"
#include "bundle_reader/file/FileBytes.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace ostrel;
using namespace ostrel::bundle_checker;

constexpr int failure = 1;
constexpr int usageError = 2;

struct NamedManifest {
    std::string name;
    std::string path;
};

struct Arguments {
    Strictness strictness = Strictness::lenient;
    std::string library; ///< empty: the manifests alone
    std::vector<NamedManifest> manifests;
};

constexpr std::string_view usage =
    "usage: ostrel_bundle_checker [--strict] [--library LIBRARY] NAME MANIFEST [NAME MANIFEST]...\n"
    "Checks the manifest of each bundle NAME; with --library, whether LIBRARY fits the manifests in it, which were\n"
    "made of the files MANIFEST. --strict makes the warnings errors.\n";

// Of a larger file no more than this is needed to see that it is too large.
constexpr std::uint64_t sizeThatTells = bundle_reader::manifestLimit + 1;

void writeFailure(const std::exception& error)
{
    std::cerr << "ostrel_bundle_checker: error: " << escaped(error.what(), 1000) << '\n';
}

std::string fileName(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

/// Nothing when the call is wrong.
bool read(std::vector<std::string> rest, Arguments& arguments)
{
    while (!rest.empty() && rest.front().rfind("--", 0) == 0) {
        const std::string option = rest.front();
        rest.erase(rest.begin());
        if (option == "--strict") {
            arguments.strictness = Strictness::strict;
        } else if (option == "--library" && !rest.empty()) {
            arguments.library = rest.front();
            rest.erase(rest.begin());
        } else {
            return false;
        }
    }
    for (std::size_t i = 0; i + 1 < rest.size(); i += 2) {
        arguments.manifests.push_back({rest[i], rest[i + 1]});
    }
    return !rest.empty() && rest.size() % 2 == 0;
}

bool checkNamed(const NamedManifest& manifest, Strictness strictness)
{
    try {
        const bundle_reader::FileBytes file{manifest.path};
        const std::string text = file.text(0, sizeThatTells);
        return writeFindings(std::cerr, manifest.path, text, checkManifest(text, manifest.name), strictness);
    } catch (const std::system_error& error) {
        writeFailure(error);
        return true;
    }
}

bool checkManifests(const Arguments& arguments)
{
    // Each of them, so that one build tells all.
    bool failed = false;
    for (const NamedManifest& manifest : arguments.manifests) {
        failed = checkNamed(manifest, arguments.strictness) || failed;
    }
    return failed;
}

/// The names of the bundles for which the library exports an activator.
std::vector<std::string> activatorsOf(const std::string& library)
{
    std::vector<std::string> names = bundle_reader::exportedSymbols(library, activatorSymbol);
    for (std::string& name : names) {
        name.erase(0, activatorSymbol.size());
    }
    return names;
}

bool checkLibrary(const Arguments& arguments)
{
    const auto activators = activatorsOf(arguments.library);
    const bundle_reader::Contents contents = bundle_reader::read(arguments.library);
    bool failed = false;
    for (const NamedManifest& manifest : arguments.manifests) {
        const auto folder = std::find_if(contents.folders.begin(), contents.folders.end(),
                                         [&manifest](const auto& one) { return one.name == manifest.name; });
        if (folder == contents.folders.end() || !folder->manifest) {
            std::cerr << escaped(arguments.library, arguments.library.size())
                      << ": error: the library holds no manifest of the bundle " << quoted(manifest.name)
                      << (contents.damage.empty() ? "" : ": " + contents.damage) << '\n';
            failed = true;
            continue;
        }
        const std::string& text = *folder->manifest;
        const Findings findings = checkActivator(text, manifest.name, fileName(arguments.library), activators);
        failed = writeFindings(std::cerr, manifest.path, text, findings, arguments.strictness) || failed;
    }
    return failed;
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        Arguments arguments;
        if (!read({argv + 1, argv + argc}, arguments)) {
            std::cerr << usage;
            return usageError;
        }
        const bool failed = arguments.library.empty() ? checkManifests(arguments) : checkLibrary(arguments);
        return failed ? failure : 0;
    } catch (const std::exception& error) {
        writeFailure(error);
        return failure;
    }
}
