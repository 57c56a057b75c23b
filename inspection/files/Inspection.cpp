#include "inspection/Inspection.h"

#include "bundle_reader/BundleFile.h"
#include "bundle_reader/Holding.h"
#include "bundle_reader/elf/FrameworkNeeded.h"
#include "bundle_reader/file/FileList.h"
#include "bundle_reader/manifest/JsonWriter.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"
#include "inspection/files/FileFault.h"
#include "inspection/files/FrameworkValue.h"
#include "inspection/files/Survey.h"
#include "inspection/json/JsonObject.h"

#include <system_error>
#include <utility>

namespace ostrel::inspection {
namespace {

using bundle_reader::Contents;
using bundle_reader::Folder;

FileKind kindOf(const Contents& contents)
{
    switch (contents.format) {
    case bundle_reader::Format::elf:
        return FileKind::library;
    case bundle_reader::Format::zip:
        return FileKind::archive;
    case bundle_reader::Format::other:
        break;
    }
    return FileKind::other;
}

std::optional<std::string> frameworkOf(const Contents& contents)
{
    switch (bundle_reader::builtFor(contents.needed).framework) {
    case bundle_reader::Framework::embedded:
        return "embedded";
    case bundle_reader::Framework::installed:
        return "installed";
    case bundle_reader::Framework::none:
        break;
    }
    return std::nullopt;
}

std::optional<std::string> versionOf(const bundle_reader::JsonValue& manifest)
{
    const auto* const member = bundle_reader::findMember(manifest, bundle_reader::keys::version);
    if (member == nullptr) {
        return toText(bundle_reader::Version{});
    }
    const auto text = bundle_reader::versionText(manifest);
    if (!text) {
        return std::nullopt;
    }
    const auto reading = bundle_reader::readVersion(*text);
    return reading.fault.empty() ? std::optional{toText(reading.version)} : std::nullopt;
}

/// The declaration as frameworks take it; null when there is none.
const bundle_reader::JsonMember* filtersOf(const bundle_reader::JsonValue& manifest)
{
    namespace keys = bundle_reader::keys;
    const auto* const container = bundle_reader::findMember(manifest, keys::container);
    return container != nullptr ? bundle_reader::findMember(container->value, keys::filters) : nullptr;
}

/// JSON that is written in lines, in one: no text in it holds a line end.
std::string inOneLine(const std::string& json)
{
    std::string line;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (json[i] != '\n') {
            line += json[i];
            continue;
        }
        line += !line.empty() && line.back() == ',' ? " " : "";
        i = json.find_first_not_of(' ', i + 1) - 1;
    }
    return line;
}

/// The names of the archive's files; none where it cannot be read any more.
std::vector<std::string> entriesOf(const std::string& path, const Contents& contents)
{
    std::vector<std::string> names;
    try {
        const bundle_reader::ArchiveReader reader{bundle_reader::openArchive(path, contents.place)};
        for (const auto& entry : reader.entries()) {
            names.push_back(entry.name);
        }
    } catch (const std::runtime_error&) {
        // It was changed meanwhile. What was read before stays true of the file that was there.
    }
    return names;
}

std::vector<std::string> resourcesIn(const std::string& folder, const std::vector<std::string>& entries)
{
    const std::string prefix = folder + '/';
    std::vector<std::string> resources;
    for (const std::string& name : entries) {
        if (name.size() > prefix.size() && name.compare(0, prefix.size(), prefix) == 0 && name.back() != '/' &&
            !bundle_reader::isSameKey(name.substr(prefix.size()), "manifest.json")) {
            resources.push_back(name.substr(prefix.size()));
        }
    }
    return resources;
}

class Inspector {
public:
    explicit Inspector(Inspection& inspection) : m_inspection{inspection} {}

    void look(const std::string& path)
    {
        InspectedFile file;
        file.file = path;
        try {
            const Contents contents = bundle_reader::read(path);
            describe(file, contents);
        } catch (const std::system_error& error) {
            file.fault = unreadable(path, error.code());
        }
        if (file.fault) {
            file.why = file.fault->what + ": " + file.fault->why;
        }
        m_inspection.files.push_back(std::move(file));
    }

private:
    void describe(InspectedFile& file, const Contents& contents)
    {
        file.kind = kindOf(contents);
        file.framework = frameworkOf(contents);
        file.needed = contents.needed;
        if (m_inspection.isDirectory && bundle_reader::isPassedOver(file.file, contents)) {
            file.why = whyNoBundle(contents);
            return;
        }
        file.fault = faultOf(file.file, contents);
        if (file.fault && file.fault->code == Code::otherFramework) {
            file.fault.reset(); // it is a bundle all the same, and its framework is told
        }
        const std::vector<std::string> entries = entriesOf(file.file, contents);
        for (const Folder& folder : contents.folders) {
            describe(file, folder, entries);
        }
    }

    void describe(InspectedFile& file, const Folder& folder, const std::vector<std::string>& entries)
    {
        const bundle_reader::Json json = bundle_reader::readJson(folder.manifest.value_or(""));
        if (json.fault) {
            return;
        }
        InspectedBundle bundle;
        bundle.symbolicName = folder.name;
        bundle.version = versionOf(json.root);
        bundle.componentName = componentNameOf(json.root);
        bundle.activator = bundle_reader::asksForActivator(json.root);
        bundle.headers = bundle_reader::writeJson(asFrameworksTake(json.root));
        if (const auto* const filters = filtersOf(json.root)) {
            bundle.filters = inOneLine(bundle_reader::writeJson(asFrameworksTake(filters->value)));
            addDeclared(m_inspection.vocabulary, toAny(filters->value));
        }
        bundle.resources = resourcesIn(folder.name, entries);
        file.bundles.push_back(std::move(bundle));
    }

    Inspection& m_inspection;
};

} // namespace

std::string_view toText(FileKind kind)
{
    switch (kind) {
    case FileKind::library:
        return "library";
    case FileKind::archive:
        return "archive";
    case FileKind::other:
        break;
    }
    return "other";
}

Inspection inspectFile(const std::string& path)
{
    Inspection inspection;
    Inspector{inspection}.look(path);
    return inspection;
}

Inspection inspectDirectory(const std::string& directory)
{
    const bundle_reader::FileList list = bundle_reader::listFiles(directory);
    if (list.error != 0) {
        throw std::system_error{list.error, std::generic_category(), list.unreadable};
    }
    Inspection inspection;
    inspection.isDirectory = true;
    Inspector inspector{inspection};
    for (const std::string& name : list.files) {
        inspector.look(joined(directory, name));
    }
    return inspection;
}

} // namespace ostrel::inspection
