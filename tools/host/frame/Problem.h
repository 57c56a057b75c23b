#pragma once

#include "frame/ExitStatus.h"

#include <inspection/Code.h>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace ostrel::host {

/// Errors for the user, each with what went wrong, where, why and what to do about it; and the exit status that tells
/// scripts. Texts are given as they are; print() escapes them.
class Problem final : public std::runtime_error {
public:
    struct Text {
        std::string what;             ///< whole in itself, together with `where`
        std::string where;            ///< a file or a stream; empty where there is none, as in usage errors
        std::vector<std::string> why; ///< one line each
        std::string remedy;           ///< true for this very case
        std::optional<inspection::Code> code = std::nullopt;
    };

    Problem(ExitStatus status, Text text);
    /// Several of one kind, such as all the files of a directory that cannot be used; at least one.
    Problem(ExitStatus status, std::vector<Text> texts);

    ExitStatus status() const { return m_status; }
    const std::vector<Text>& texts() const { return m_texts; }

    /// The same with other texts, at least one.
    Problem with(std::vector<Text> texts) const;

    /// The same with a remark on what follows from it, in one line behind all.
    Problem noted(std::string note) const;

    /// Writes each as "ostrel-host: error: WHERE: WHAT [code]", a line for each reason, and one for the remedy.
    void print(std::ostream& stream) const;

private:
    ExitStatus m_status;
    std::vector<Text> m_texts;
    std::string m_note;
};

/// The bytes in quotes, as a part of one of the texts above.
std::string quoted(const std::string& bytes);

} // namespace ostrel::host
