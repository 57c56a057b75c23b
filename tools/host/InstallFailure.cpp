#include "InstallFailure.h"

#include <platform/Utf16Path.h>

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <platform/InstallBundles.h>
#include <string_view>
#include <system_error>
#include <utility>

namespace ostrel::host {

namespace {

using inspection::Code;

/// A kind of message of installBundles(), told by words that follow the name of the file.
struct Form {
    std::string_view words; ///< with a bracket or a colon at the end where the reason stands behind them
    const char* what;
    std::optional<Code> code;
};

constexpr std::array forms{
    Form{"' is truncated (", "the shared object is truncated", Code::truncatedLibrary},
    Form{"' is damaged (", "the archive in the file is damaged", Code::damagedArchive},
    Form{"' holds no manifest (", "the archive in the file holds no manifest", Code::noManifest},
    Form{"' is no bundle: ", "the file is no bundle", Code::notABundle},
    Form{"' was built for ", "the bundle was built for another framework", Code::otherFramework},
    Form{"' cannot be read: ", "the file cannot be read", Code::unreadableFile},
    Form{"' has no manifest.json", "a folder in the archive has no manifest", Code::folderWithoutManifest},
    Form{"' is not valid JSON of an object (", "a manifest cannot be understood", Code::manifestSyntax},
    Form{"' both hold the bundle '", "another file holds the same bundle", Code::duplicateBundle},
    Form{"bundle.symbolic_name is ", "a manifest has no \"bundle.symbolic_name\"", Code::noSymbolicName},
    Form{"The Json value for bundle.version ", "a manifest has no valid \"bundle.version\"", Code::badVersion},
};

bool beginsWith(std::string_view text, std::string_view with)
{
    return text.substr(0, with.size()) == with;
}

bool endsWith(std::string_view text, std::string_view with)
{
    return text.size() >= with.size() && text.substr(text.size() - with.size()) == with;
}

/// The reason behind the words, in brackets or not; else the whole sentence.
std::string reasonIn(std::string_view sentence, std::string_view words)
{
    if (endsWith(words, "(") || endsWith(words, ": ")) {
        sentence.remove_prefix(sentence.find(words) + words.size());
    }
    if (endsWith(words, "(") && endsWith(sentence, ")")) {
        sentence.remove_suffix(1);
    }
    return std::string{sentence};
}

/// The message up to its remedy, and the remedy. The framework's words, which have none, come without what says again
/// which file they are about.
std::pair<std::string_view, std::string_view> split(const std::string& file, std::string_view message)
{
    constexpr std::string_view origin = "installBundles: ";
    if (beginsWith(message, origin)) {
        message.remove_prefix(origin.size());
    }
    const std::string refused = "the framework refused " + quoted(file) + ": ";
    if (beginsWith(message, refused)) {
        message.remove_prefix(refused.size());
        const std::string failed = "Failed to install bundle library at " + file + ": ";
        if (beginsWith(message, failed)) {
            message.remove_prefix(failed.size());
        }
        return {message, "correct it and build the bundle again"};
    }
    const std::size_t end = message.rfind("; ");
    return end == std::string_view::npos
               ? std::pair{message, std::string_view{"build it again, or take it out of the directory"}}
               : std::pair{message.substr(0, end), message.substr(end + 2)};
}

Problem::Text describe(const std::string& file, const std::string& message)
{
    const auto [sentence, remedy] = split(file, message);
    for (const Form& form : forms) {
        if (sentence.find(form.words) != std::string_view::npos) {
            return {form.what, file, {reasonIn(sentence, form.words)}, std::string{remedy}, form.code};
        }
    }
    return {"the bundle cannot be installed", file, {std::string{sentence}}, std::string{remedy}};
}

/// Installing a directory passes over these files; installing one that is named does not.
bool isPassedOver(const std::string& file, std::string_view message)
{
    const auto says = [message](std::string_view words) { return message.find(words) != std::string_view::npos; };
    return says("' holds no archive and so no bundle") ||
           (!endsWith(file, ".so") && (says("' is no bundle: it is neither") || says("' holds no manifest (")));
}

std::vector<std::string> filesOf(const std::string& directory)
{
    namespace fs = std::filesystem;
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry{directory, error}; !error && entry != fs::directory_iterator{};
         entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored)) {
            files.push_back(entry->path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

std::vector<Problem::Text> filesThatFail(const cppmicroservices::BundleContext& context, const std::string& directory)
{
    std::vector<Problem::Text> failures;
    for (const std::string& file : filesOf(directory)) {
        std::u16string path;
        try {
            path = ostrel::platform::toUtf16(file);
        } catch (const std::runtime_error&) {
            continue; // a path is UTF-8; such a file is reached through its directory alone
        }
        try {
            ostrel::platform::installBundles(context, ostrel::platform::Utf16Path{std::move(path)});
        } catch (const std::exception& error) {
            if (!isPassedOver(file, error.what())) {
                failures.push_back(describe(file, error.what()));
            }
        }
    }
    return failures;
}

} // namespace ostrel::host
