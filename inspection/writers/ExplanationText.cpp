#include "inspection/Explanation.h"
#include "inspection/Text.h"
#include "inspection/start/Sentence.h"

namespace ostrel::inspection {
namespace {

void addLine(std::string& text, const std::string& line)
{
    text += escaped(line) + '\n';
}

void write(std::string& text, const Subject& subject, const Conditions& conditions)
{
    addLine(text, (subject.kind == SubjectKind::service ? "service " : "") + subject.name + " " + subject.text);
    addLine(text, "  file:   " + subject.file +
                      (subject.bundle == subject.name ? std::string{} : " (bundle " + subject.bundle + ')'));
    for (const std::string& hint : subject.hints) {
        addLine(text, "  hint:   " + hint);
    }
    if (subject.change) {
        addLine(text, "  change: " + changeInWords(conditions, *subject.change));
        const std::string line = asCommandLine(*subject.change);
        addLine(text, "  then:   " + (line.empty() ? "no conditions" : line));
    } else if (subject.admitted == false) {
        addLine(text, "  change: no change of the conditions admits it");
    }
}

} // namespace

std::string toText(const Explanation& explanation)
{
    std::string text;
    for (const Subject& subject : explanation.subjects) {
        write(text, subject, explanation.conditions);
    }
    return text;
}

} // namespace ostrel::inspection
