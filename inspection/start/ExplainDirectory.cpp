#include "bundle_reader/BundleFile.h"
#include "inspection/Explanation.h"
#include "inspection/files/ManifestFault.h"
#include "inspection/files/Survey.h"
#include "inspection/start/Subject.h"

#include <system_error>

namespace ostrel::inspection {
namespace {

/// A manifest that does not mean what it seems to is the reason more often than the conditions are.
void addHints(Subject& subject, const bundle_reader::Contents& contents)
{
    for (const bundle_reader::Folder& folder : contents.folders) {
        if (folder.name == subject.bundle && folder.manifest) {
            const auto hints = manifestHints(*folder.manifest, subject.bundle);
            subject.hints.insert(subject.hints.end(), hints.begin(), hints.end());
        }
    }
}

bundle_reader::Contents contentsOf(const std::string& path)
{
    try {
        return bundle_reader::read(path);
    } catch (const std::system_error&) {
        return {}; // it was installed a moment ago; without it there are no hints
    }
}

} // namespace

Explanation explainDirectory(const cppmicroservices::BundleContext& context, const std::string& directory,
                             const us_container::FilterMap& filterMap)
{
    Explanation explanation;
    explanation.conditions = toConditions(filterMap);
    Survey surveyed = survey(context, directory);
    explanation.hasFolders = surveyed.hasFolders;
    for (SurveyedFile& file : surveyed.files) {
        if (file.fault) {
            explanation.findings.push_back(std::move(*file.fault));
        } else if (!file.passedOver.empty()) {
            explanation.passedOver.push_back({file.path, file.passedOver});
        } else {
            const bundle_reader::Contents contents = contentsOf(file.path);
            for (const auto& bundle : file.bundles) {
                Subject subject = subjectOf(bundle, filterMap, Depth::change, explanation.vocabulary);
                subject.file = file.path;
                addHints(subject, contents);
                explanation.subjects.push_back(std::move(subject));
            }
        }
    }
    return explanation;
}

} // namespace ostrel::inspection
