#include "inspection/StartFailure.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <optional>

namespace ostrel::inspection {
namespace {

constexpr auto npos = std::string_view::npos;

bool removePrefix(std::string_view& text, std::string_view prefix)
{
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

bool removeSuffix(std::string_view& text, std::string_view suffix)
{
    if (text.size() < suffix.size() || text.substr(text.size() - suffix.size()) != suffix) {
        return false;
    }
    text.remove_suffix(suffix.size());
    return true;
}

/// What stands between the two, if both are there.
std::optional<std::string_view> between(std::string_view text, std::string_view begin, std::string_view end)
{
    const std::size_t first = text.find(begin);
    if (first == npos) {
        return std::nullopt;
    }
    text.remove_prefix(first + begin.size());
    const std::size_t last = text.find(end);
    return last == npos ? std::nullopt : std::optional{text.substr(0, last)};
}

/// Removes "Bundle NAME (location= FILE) start failed: "; there is one for each bundle that started the next.
void removeFrameworksWords(std::string_view& text)
{
    constexpr std::string_view words = ") start failed: ";
    while (text.substr(0, 7) == "Bundle " && between(text, " (location= ", words)) {
        text.remove_prefix(text.find(words, text.find(" (location= ")) + words.size());
    }
}

std::string demangled(const std::string& symbol)
{
    struct Free {
        void operator()(char* name) const { std::free(name); }
    };
    const std::unique_ptr<char, Free> name{abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, nullptr)};
    return name ? name.get() : symbol;
}

StartFailure undefinedSymbol(std::string_view mangled)
{
    const std::string symbol = demangled(std::string{mangled.substr(0, mangled.find_first_of(" ,:"))});
    return {Code::undefinedSymbol,
            "it needs the symbol '" + symbol + "', which nothing defines",
            "neither its own library nor one that it is linked with defines the symbol",
            "add the source or link the library that defines it, and build the bundle again",
            symbol,
            {}};
}

StartFailure libraryMissing(std::string_view library, std::string_view file, std::string_view reason)
{
    const std::string name{library};
    if (library == file) {
        return {Code::libraryMissing, "its file is gone", std::string{reason}, "build the bundle again", {}, name};
    }
    return {Code::libraryMissing,
            "it needs the library '" + name + "', which is not found",
            std::string{reason},
            "install that library, or name its directory in LD_LIBRARY_PATH",
            {},
            name};
}

StartFailure libraryTooOld(std::string_view library, std::string_view version)
{
    return {Code::libraryMissing,
            "it needs a newer library '" + std::string{library} + "'",
            "the one that is found has no version '" + std::string{version} + "'",
            "install a newer one, or build the bundle on this system",
            {},
            std::string{library}};
}

struct LoaderText {
    std::string_view file;
    std::string_view words;
};

/// Takes "FILE. WORDS" apart; either may have a full stop, and the words mostly begin with a file too.
LoaderText taken(std::string_view text)
{
    for (std::size_t end = text.find(". "); end != npos; end = text.find(". ", end + 1)) {
        const std::string_view file = text.substr(0, end);
        if (text.substr(end + 2, file.size()) == file) {
            return {file, text.substr(end + 2)};
        }
    }
    const std::size_t end = text.rfind(". ", text.find(": "));
    return end == npos ? LoaderText{{}, text} : LoaderText{text.substr(0, end), text.substr(end + 2)};
}

StartFailure loaderFailure(std::string_view text)
{
    // What std::system_error adds for a code that is none.
    while (removeSuffix(text, ": Success")) {
    }
    const auto [file, words] = taken(text);
    if (const std::size_t symbol = words.rfind(": undefined symbol: "); symbol != npos) {
        return undefinedSymbol(words.substr(symbol + 20));
    }
    if (const std::size_t end = words.find(": cannot open shared object file: "); end != npos) {
        return libraryMissing(words.substr(0, end), file, words.substr(end + 2));
    }
    if (const auto version = between(words, ": version `", "' not found")) {
        return libraryTooOld(words.substr(0, words.find(": version `")), *version);
    }
    return {Code::startThrows, "its library cannot be loaded", std::string{words}, "build the bundle again", {}, {}};
}

StartFailure activatorMissing(std::string_view bundle)
{
    const std::string name{bundle};
    return {Code::activatorMissing,
            "its library has no activator of the bundle '" + name + "'",
            "the manifest says \"bundle.activator\": true, and the library does not export _us_create_activator_" +
                name + " and _us_destroy_activator_" + name,
            "write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its sources, or take "
            "\"bundle.activator\" out of the manifest if the bundle has none",
            {},
            {}};
}

} // namespace

StartFailure startFailure(std::string_view text)
{
    removeFrameworksWords(text);
    if (removePrefix(text, "Error loading ")) {
        return loaderFailure(text);
    }
    if (removeSuffix(text, " activator constructor not found") ||
        removeSuffix(text, " activator destructor not found")) {
        return activatorMissing(between(text, "Bundle ", " (location=").value_or(text));
    }
    const bool isException = text != "unknown";
    return {Code::startThrows,
            isException ? "its start threw an exception" : "its start threw something that is no std::exception",
            std::string{isException ? text : "the framework does not tell what it was"},
            "repair its activator, or refuse the bundle by other conditions",
            {},
            {}};
}

} // namespace ostrel::inspection
