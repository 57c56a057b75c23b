#include "inspection/Inspection.h"
#include "inspection/Text.h"
#include "inspection/start/Sentence.h"

namespace ostrel::inspection {
namespace {

template <typename Texts>
std::string listed(const Texts& texts)
{
    std::string line;
    for (const std::string& text : texts) {
        line += (line.empty() ? "" : ", ") + text;
    }
    return line;
}

std::string headline(const InspectedFile& file)
{
    const std::string kind = file.kind == FileKind::library   ? "a library"
                             : file.kind == FileKind::archive ? "an archive"
                                                              : "a file of another kind";
    const std::string framework = !file.framework                 ? ""
                                  : *file.framework == "embedded" ? " for the embedded framework"
                                                                  : " for an installed CppMicroServices";
    return file.file + ": " + kind + framework +
           (file.bundles.empty() ? std::string{} : " with " + counted(file.bundles.size(), "bundle"));
}

void write(std::string& text, const InspectedBundle& bundle)
{
    const auto add = [&text](const std::string& line) { text += escaped(line) + '\n'; };
    add("  bundle " + bundle.symbolicName + ' ' + bundle.version.value_or("without a version that can be used") +
        (bundle.componentName ? ", component " + *bundle.componentName : ", without a component name") +
        (bundle.activator ? ", with an activator" : ", without an activator"));
    if (!bundle.filters.empty()) {
        add("    filters: " + bundle.filters);
    }
    if (!bundle.resources.empty()) {
        add("    resources: " + listed(bundle.resources));
    }
}

void write(std::string& text, const InspectedFile& file)
{
    const auto add = [&text](const std::string& line) { text += escaped(line) + '\n'; };
    add(headline(file));
    if (file.fault) {
        add("  no bundle: " + file.why + " [" + std::string{toText(file.fault->code)} + ']');
        add("  do: " + file.fault->remedy);
    } else if (!file.why.empty()) {
        add("  no bundle: " + file.why);
    }
    for (const InspectedBundle& bundle : file.bundles) {
        write(text, bundle);
    }
    if (!file.needed.empty()) {
        add("  needs: " + listed(file.needed));
    }
}

} // namespace

std::string toText(const Inspection& inspection)
{
    std::string text;
    for (const InspectedFile& file : inspection.files) {
        write(text, file);
    }
    if (inspection.isDirectory) {
        text += inspection.vocabulary.empty() ? "no conditions are declared\n" : "conditions that are declared:\n";
        for (const auto& [name, values] : inspection.vocabulary) {
            text += escaped("  " + name + ": " + listed(values)) + '\n';
        }
    }
    return text;
}

} // namespace ostrel::inspection
