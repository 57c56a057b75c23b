#include "bundle_reader/manifest/JsonTree.h"

#include <rapidjson/error/en.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

using Kind = JsonValue::Kind;

/// Writes a number into a value.
class NumberHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, NumberHandler> {
public:
    explicit NumberHandler(JsonValue& value) : m_value{value} {}

    bool Int(int number) { return Int64(number); }
    bool Uint(unsigned number) { return Int64(number); }

    bool Int64(std::int64_t number)
    {
        const bool narrow = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
        m_value.kind = narrow ? Kind::integer : Kind::wideInteger;
        m_value.integer = number;
        return true;
    }

    bool Uint64(std::uint64_t number)
    {
        m_value.kind = Kind::wideInteger;
        m_value.integer = static_cast<std::int64_t>(number);
        m_value.aboveSigned = m_value.integer < 0;
        return true;
    }

    bool Double(double number)
    {
        m_value.kind = Kind::number;
        m_value.number = number;
        return true;
    }

private:
    JsonValue& m_value;
};

/// True for a number with so many digits in a negative exponent that it is 0. The parser's sums run over for those next
/// to the smallest int, and what it reads then lies outside of its tables.
bool vanishes(std::string_view digits)
{
    constexpr std::size_t harmless = 8;
    const std::size_t mark = digits.find_first_of("eE");
    if (mark == std::string_view::npos || digits[mark + 1] != '-') {
        return false;
    }
    const std::size_t first = digits.find_first_not_of('0', mark + 2);
    return first != std::string_view::npos && digits.size() - first > harmless;
}

} // namespace

JsonTree::JsonTree(const JsonStream& stream, JsonDialect dialect, CheckedAllocator& memory)
    : m_stream{stream}, m_dialect{dialect}, m_numbers{&memory}, m_end{stream.Tell()}
{
}

bool JsonTree::Null()
{
    place(Kind::null);
    return true;
}

bool JsonTree::Bool(bool value)
{
    place(Kind::boolean).boolean = value;
    return true;
}

bool JsonTree::RawNumber(const char* digits, rapidjson::SizeType length, bool /*copy*/)
{
    JsonValue number;
    number.kind = Kind::number;
    if (vanishes({digits, length})) {
        number.number = *digits == '-' ? -0.0 : 0.0;
    } else {
        NumberHandler handler{number};
        rapidjson::MemoryStream stream{digits, length};
        if (m_dialect == JsonDialect::strict) {
            m_numbers.Parse<rapidjson::kParseDefaultFlags>(stream, handler);
        } else {
            m_numbers.Parse<rapidjson::kParseFullPrecisionFlag>(stream, handler);
        }
    }
    // This version of the parser lets through a number that is too big by its last digits only.
    if (!std::isfinite(number.number)) {
        return refuse(JsonFault::Kind::infiniteNumber, rapidjson::GetParseError_En(rapidjson::kParseErrorNumberTooBig));
    }
    JsonValue& value = place(number.kind);
    value.integer = number.integer;
    value.aboveSigned = number.aboveSigned;
    value.number = number.number;
    return true;
}

bool JsonTree::String(const char* text, rapidjson::SizeType length, bool /*copy*/)
{
    place(Kind::text).text.assign(text, length);
    return true;
}

bool JsonTree::Key(const char* text, rapidjson::SizeType length, bool /*copy*/)
{
    std::vector<JsonMember>& members = m_open[m_depth - 1]->members;
    JsonMember& member = members.emplace_back();
    member.key.assign(text, length);
    member.offset = gapAfterLast().end;
    m_end = m_stream.Tell();
    return true;
}

/// Puts a value where the next one belongs: to the key that was read last, at the end of a list, or as the root.
JsonValue& JsonTree::place(Kind kind)
{
    JsonValue* value = &m_root;
    if (m_depth > 0) {
        JsonValue& parent = *m_open[m_depth - 1];
        value = parent.kind == Kind::map ? &parent.members.back().value : &parent.items.emplace_back();
    }
    m_rootSeen = true;
    value->kind = kind;
    value->offset = gapAfterLast().end;
    m_end = m_stream.Tell();
    return *value;
}

bool JsonTree::open(Kind kind)
{
    if (m_depth == m_open.size()) {
        return refuse(JsonFault::Kind::tooDeep,
                      "The objects and arrays nest deeper than " + std::to_string(nestingLimit) + " levels.");
    }
    JsonValue& value = place(kind);
    // The parser stands before the bracket or behind it, depending on its mode.
    m_end = value.offset + 1;
    m_open[m_depth++] = &value;
    return true;
}

bool JsonTree::close()
{
    --m_depth;
    m_end = m_stream.Tell();
    return true;
}

bool JsonTree::refuse(JsonFault::Kind kind, std::string words)
{
    m_fault = JsonFault{kind, std::move(words), gapAfterLast().end, pathTo(true), false};
    return false;
}

JsonTree::Gap JsonTree::gapAfterLast() const
{
    const std::string_view text = m_stream.text();
    Gap gap{m_end, false};
    while (gap.end < text.size()) {
        const char c = text[gap.end];
        if (c == '/' && m_dialect != JsonDialect::strict) {
            gap.end = behindComment(gap.end);
        } else if (std::string_view{" \t\r\n,:]}"}.find(c) != std::string_view::npos) {
            gap.hasComma = gap.hasComma || c == ',';
            ++gap.end;
        } else {
            break;
        }
    }
    return gap;
}

std::size_t JsonTree::behindComment(std::size_t begin) const
{
    const std::string_view text = m_stream.text();
    const bool isLine = text.substr(begin, 2) == "//";
    const std::string_view closing = isLine ? "\n" : "*/";
    const std::size_t found = text.find(closing, begin + 2);
    return found == std::string_view::npos ? text.size() : found + closing.size();
}

std::string JsonTree::path() const
{
    const bool nothingRead = m_depth > 0 && m_open[m_depth - 1]->items.empty();
    return pathTo(nothingRead || gapAfterLast().hasComma);
}

/// @param next  if what was opened last is a list: to the item after those that it has
std::string JsonTree::pathTo(bool next) const
{
    std::string path;
    for (std::size_t i = 0; i < m_depth; ++i) {
        const JsonValue& value = *m_open[i];
        if (value.kind == Kind::list) {
            const bool isBehind = next && i + 1 == m_depth;
            path += '[' + std::to_string(value.items.size() - (isBehind ? 0 : 1)) + ']';
        } else if (!value.members.empty()) {
            path += (path.empty() ? "" : ".") + value.members.back().key;
        }
    }
    return path;
}

} // namespace ostrel::bundle_reader
