#include "cli/Json.h"

#include "cli/ProgramRun.h"

#include <algorithm>
#include <stdexcept>

namespace ostrel::test {

Json::Json(const std::string& text)
{
    auto read = bundle_reader::readJson(text);
    if (read.fault) {
        throw std::runtime_error{"no JSON object: " + read.fault->words + " in: " + text};
    }
    m_value = std::move(read.root);
}

bool Json::has(std::string_view key) const
{
    return std::any_of(m_value.members.begin(), m_value.members.end(),
                       [key](const auto& member) { return member.key == key; });
}

Json Json::operator[](std::string_view key) const
{
    for (const auto& member : m_value.members) {
        if (member.key == key) {
            return Json{member.value};
        }
    }
    throw std::runtime_error{"there is no key '" + std::string{key} + "'"};
}

Json Json::operator[](std::size_t index) const
{
    return Json{m_value.items.at(index)};
}

std::vector<std::string> Json::texts() const
{
    std::vector<std::string> result;
    for (const auto& item : m_value.items) {
        result.push_back(item.text);
    }
    return result;
}

std::vector<std::string> Json::texts(std::string_view key) const
{
    std::vector<std::string> result;
    for (const auto& item : m_value.items) {
        result.push_back(Json{item}[key].text());
    }
    return result;
}

std::string faultsBy(const std::string& schema, const std::string& output)
{
    const std::string path = std::string{OSTREL_TEST_SCHEMAS} + "/" + schema + ".schema.json";
    const ProgramResult result = runProgram(OSTREL_TEST_PYTHON, {OSTREL_TEST_VALIDATE, path}, output);
    return result.status == 0 ? "" : result.out + result.err + "status " + std::to_string(result.status);
}

} // namespace ostrel::test
