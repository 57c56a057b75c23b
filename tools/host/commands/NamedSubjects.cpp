#include "commands/NamedSubjects.h"

#include "frame/Problem.h"

#include <algorithm>
#include <inspection/Text.h>
#include <set>
#include <string_view>
#include <utility>

namespace ostrel::host {

namespace {

using inspection::Explanation;
using inspection::Finding;
using inspection::PassedOver;
using inspection::Subject;
using inspection::SubjectKind;

std::string fileName(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

class Chosen {
public:
    explicit Chosen(const std::vector<std::string>& names) : m_names(names.begin(), names.end()) {}

    /// Bundles are asked for before the services that they registered.
    bool has(const Subject& subject)
    {
        if (subject.kind == SubjectKind::service) {
            return m_bundles.count(subject.bundle) != 0;
        }
        const bool isNamed = named({subject.name, subject.bundle, fileName(subject.file)});
        if (isNamed) {
            m_bundles.insert(subject.bundle);
        }
        return isNamed;
    }

    bool has(const Finding& finding) { return named({finding.bundle, fileName(finding.file)}); }
    bool has(const PassedOver& file) { return named({fileName(file.file)}); }

    /// Names that nothing has, which was asked for.
    std::vector<std::string> unknown() const
    {
        std::vector<std::string> left;
        std::set_difference(m_names.begin(), m_names.end(), m_found.begin(), m_found.end(), std::back_inserter(left));
        return left;
    }

    const std::set<std::string>& seen() const { return m_seen; }

private:
    bool named(const std::vector<std::string>& candidates)
    {
        bool found = false;
        for (const std::string& candidate : candidates) {
            if (candidate.empty()) {
                continue;
            }
            m_seen.insert(candidate);
            if (m_names.count(candidate) != 0) {
                m_found.insert(candidate);
                found = true;
            }
        }
        return found;
    }

    std::set<std::string> m_names;
    std::set<std::string> m_found;
    std::set<std::string> m_seen;
    std::set<std::string> m_bundles; // symbolic names of the chosen ones
};

/// Those that are chosen, in their order.
template <typename Value>
std::vector<Value> kept(std::vector<Value>& values, Chosen& chosen)
{
    std::vector<Value> result;
    for (Value& value : values) {
        if (chosen.has(value)) {
            result.push_back(std::move(value));
        }
    }
    return result;
}

Problem::Text unknownName(const std::string& name, const std::set<std::string>& known)
{
    std::string_view nearest = inspection::nearest(name, {known.begin(), known.end()});
    if (nearest.empty() && !name.empty()) {
        const auto longer = std::find_if(known.begin(), known.end(), [&name](const std::string& one) {
            return one.find(name) != std::string::npos;
        });
        nearest = longer != known.end() ? std::string_view{*longer} : nearest;
    }
    std::string listed;
    for (const std::string& one : known) {
        listed += (listed.empty() ? "" : ", ") + one;
    }
    return {"no bundle is called " + quoted(name),
            "",
            {known.empty() ? "the directory holds no bundle" : "the names of bundles and files are: " + listed},
            known.empty()     ? "give a directory with bundles"
            : nearest.empty() ? "give one of these names"
                              : "did you mean " + std::string{nearest} + '?'};
}

} // namespace

void keepNamed(Explanation& explanation, const std::vector<std::string>& names)
{
    Chosen chosen{names};
    explanation.subjects = kept(explanation.subjects, chosen);
    explanation.findings = kept(explanation.findings, chosen);
    explanation.passedOver = kept(explanation.passedOver, chosen);
    std::vector<Problem::Text> texts;
    for (const std::string& name : chosen.unknown()) {
        texts.push_back(unknownName(name, chosen.seen()));
    }
    if (!texts.empty()) {
        throw Problem{ExitStatus::usage, std::move(texts)};
    }
    for (const PassedOver& file : explanation.passedOver) {
        explanation.findings.push_back({inspection::Code::notABundle, file.file, "", "the file holds no bundle",
                                        file.why, "name a file that holds one"});
    }
}

} // namespace ostrel::host
