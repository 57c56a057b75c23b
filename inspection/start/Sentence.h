#pragma once

#include "inspection/Explanation.h"

#include <string>

namespace ostrel::inspection {

/// The reason in plain words, as what is said of the subject: "is refused: it declares language "de", but the condition
/// is "en"". Texts of bundles stand in it as they are.
std::string sentenceOf(const Subject& subject, const us_container::FilterMap& filterMap);

/// What the smallest change is, edit by edit: "add --require a=1; drop --when b=2".
std::string changeInWords(const Conditions& before, const Conditions& after);

/// The options in one line that a shell takes: "--when language=de".
std::string asCommandLine(const Conditions& conditions);

/// How many there are of something: "1 file", "2 files".
std::string counted(std::size_t count, const std::string& what);

} // namespace ostrel::inspection
