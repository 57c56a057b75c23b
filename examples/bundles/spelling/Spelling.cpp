#include "Spelling.h"

namespace {

// Plain ASCII, so that neither the locale nor the bytes of other characters matter.
bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool isLetter(char c)
{
    return isUpper(c) || (c >= 'a' && c <= 'z');
}

char lowered(char c)
{
    return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

char raised(char c)
{
    return isLetter(c) && !isUpper(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

Spelling::Spelling()
    : m_corrections{{"accomodate", "accommodate"},
                    {"acheive", "achieve"},
                    {"adress", "address"},
                    {"beleive", "believe"},
                    {"definately", "definitely"},
                    {"occured", "occurred"},
                    {"recieve", "receive"},
                    {"seperate", "separate"},
                    {"teh", "the"},
                    {"thier", "their"},
                    {"untill", "until"},
                    {"wich", "which"}}
{
}

std::string Spelling::apply(const std::string& text) const
{
    std::string result;
    std::string word;
    for (const char c : text) {
        if (isLetter(c)) {
            word += c;
            continue;
        }
        result += corrected(word);
        word.clear();
        result += c;
    }
    return result + corrected(word);
}

std::string Spelling::corrected(const std::string& word) const
{
    if (word.empty()) {
        return word;
    }
    std::string key = word;
    key.front() = lowered(key.front());
    const auto found = m_corrections.find(key);
    if (found == m_corrections.end()) {
        return word;
    }
    std::string result = found->second;
    if (isUpper(word.front())) {
        result.front() = raised(result.front());
    }
    return result;
}
