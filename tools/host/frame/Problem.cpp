#include "frame/Problem.h"

#include <inspection/Text.h>
#include <utility>

namespace ostrel::host {

namespace {

using inspection::escaped;

std::string described(const Problem::Text& text)
{
    std::string lines = "ostrel-host: error: ";
    if (!text.where.empty()) {
        lines += escaped(text.where) + ": ";
    }
    lines += escaped(text.what);
    if (text.code) {
        lines += " [" + std::string{toText(*text.code)} + "]";
    }
    const char* label = "\n  why: ";
    for (const std::string& reason : text.why) {
        lines += label + escaped(reason);
        label = "\n       ";
    }
    return lines + "\n  do:  " + escaped(text.remedy) + "\n";
}

} // namespace

Problem::Problem(ExitStatus status, Text text) : Problem(status, std::vector<Text>{std::move(text)}) {}

Problem::Problem(ExitStatus status, std::vector<Text> texts)
    : std::runtime_error(texts.front().what), m_status(status), m_texts(std::move(texts))
{
}

void Problem::print(std::ostream& stream) const
{
    std::string all;
    for (const Text& text : m_texts) {
        all += described(text);
    }
    if (!m_note.empty()) {
        all += "ostrel-host: note: " + escaped(m_note) + "\n";
    }
    stream << all << std::flush;
}

Problem Problem::with(std::vector<Text> texts) const
{
    Problem problem{m_status, std::move(texts)};
    problem.m_note = m_note;
    return problem;
}

Problem Problem::noted(std::string note) const
{
    Problem problem = *this;
    problem.m_note = std::move(note);
    return problem;
}

std::string quoted(const std::string& bytes)
{
    return "'" + bytes + "'";
}

} // namespace ostrel::host
