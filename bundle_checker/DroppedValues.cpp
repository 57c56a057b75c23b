#include "bundle_checker/DroppedValues.h"

#include "bundle_checker/Words.h"
#include "bundle_reader/manifest/ManifestRules.h"

#include <string>
#include <unordered_map>

namespace ostrel::bundle_checker {
namespace {

using bundle_reader::JsonMember;
using bundle_reader::JsonValue;
using Kind = JsonValue::Kind;

std::string folded(std::string text)
{
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return text;
}

std::string integerText(const JsonValue& value)
{
    return value.aboveSigned ? std::to_string(static_cast<std::uint64_t>(value.integer))
                             : std::to_string(value.integer);
}

/// Goes through all values that count, and grows and shrinks one path on the way.
class Walk {
public:
    explicit Walk(Findings& findings) : m_findings{findings} {}

    void visit(const JsonValue& value)
    {
        switch (value.kind) {
        case Kind::null:
            drop(value, "null");
            break;
        case Kind::wideInteger:
            drop(value, "the integer " + integerText(value) + ", which does not fit 32 bits");
            break;
        case Kind::map:
            visitMembers(value);
            break;
        case Kind::list:
            visitItems(value);
            break;
        default:
            break;
        }
    }

private:
    void drop(const JsonValue& value, const std::string& what)
    {
        addWarning(m_findings, value.offset, keyAt(m_path) + ": the framework drops " + what);
    }

    void visitMembers(const JsonValue& map)
    {
        std::unordered_map<std::string, const JsonMember*> first;
        for (const JsonMember& member : map.members) {
            const std::size_t length = m_path.size();
            m_path += (m_path.empty() ? "" : ".") + member.key;
            const auto [known, isNew] = bundle_reader::isDropped(member.value)
                                            ? std::pair{first.end(), true}
                                            : first.emplace(folded(member.key), &member);
            if (isNew) {
                visit(member.value);
            } else {
                addWarning(m_findings, member.offset,
                           keyAt(m_path) + ": the framework drops this value, for the key stands already as " +
                               quoted(known->second->key));
            }
            m_path.resize(length);
        }
    }

    void visitItems(const JsonValue& list)
    {
        for (std::size_t i = 0; i < list.items.size(); ++i) {
            const std::size_t length = m_path.size();
            m_path += '[' + std::to_string(i) + ']';
            visit(list.items[i]);
            m_path.resize(length);
        }
    }

    Findings& m_findings;
    std::string m_path;
};

} // namespace

void describeDropped(const JsonValue& root, Findings& findings)
{
    Walk{findings}.visit(root);
}

} // namespace ostrel::bundle_checker
