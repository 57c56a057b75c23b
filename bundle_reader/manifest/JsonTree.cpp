#include "bundle_reader/manifest/JsonTree.h"

#include <rapidjson/error/en.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

using Kind = JsonValue::Kind;

/// How many digits of a negative exponent the parser can bear at least. It adds and negates exponents without a look at
/// their size, and its sums run over for those next to the smallest int.
constexpr std::size_t harmlessDigits = 8;

std::size_t countDigits(std::string_view text)
{
    return std::min(text.find_first_not_of("0123456789"), text.size());
}

std::string_view withoutZeros(std::string_view digits)
{
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

/// Adds an element; most lists and maps get by with the memory of their first.
template <typename Element>
Element& added(std::vector<Element>& elements)
{
    constexpr std::size_t usual = 4;
    if (elements.empty()) {
        elements.reserve(usual);
    }
    return elements.emplace_back();
}

} // namespace

bool mayHoldHugeExponent(std::string_view text)
{
    for (std::size_t sign = text.find('-', 1); sign < text.size(); sign = text.find('-', sign + 1)) {
        const char mark = text[sign - 1];
        if ((mark == 'e' || mark == 'E') && countDigits(text.substr(sign + 1)) > harmlessDigits) {
            return true;
        }
    }
    return false;
}

JsonTree::JsonTree(const JsonStream& stream, JsonDialect dialect, CheckedAllocator& memory)
    : m_stream{stream}, m_dialect{dialect}, m_memory{memory}, m_end{stream.Tell()}
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

bool JsonTree::Int64(std::int64_t number)
{
    const bool narrow = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    place(narrow ? Kind::integer : Kind::wideInteger).integer = number;
    return true;
}

bool JsonTree::Uint64(std::uint64_t number)
{
    JsonValue& value = place(Kind::wideInteger);
    value.integer = static_cast<std::int64_t>(number);
    value.aboveSigned = value.integer < 0;
    return true;
}

bool JsonTree::Double(double number)
{
    // The parser has an exact way of its own, but it shifts by more bits than there are. Where there is no exact number
    // in the range, the parser's stays.
    std::from_chars(m_digits.data(), m_digits.data() + m_digits.size(), number);
    // This version of the parser lets through a number that is too big by its last digits only.
    if (!std::isfinite(number)) {
        return refuse(JsonFault::Kind::infiniteNumber, rapidjson::GetParseError_En(rapidjson::kParseErrorNumberTooBig));
    }
    place(Kind::number).number = number;
    return true;
}

/// Has the parser read a number alone, so that none comes to it whose exponent it cannot bear.
bool JsonTree::RawNumber(const char* digits, rapidjson::SizeType length, bool /*copy*/)
{
    const std::string_view whole{digits, length};
    m_digits = m_dialect == JsonDialect::strict ? std::string_view{} : whole;
    const std::size_t exponent = std::min(whole.find_first_of("eE"), whole.size());
    const std::size_t digitsAt = std::min(whole.find_first_of("0123456789", exponent), whole.size());
    // It is negative, as the parser has refused the number otherwise.
    if (withoutZeros(whole.substr(digitsAt)).size() > harmlessDigits) {
        return Double(whole.front() == '-' ? -0.0 : 0.0);
    }
    rapidjson::MemoryStream stream{digits, length};
    return !JsonReader{&m_memory}.Parse(stream, *this).IsError();
}

bool JsonTree::String(const char* text, rapidjson::SizeType length, bool /*copy*/)
{
    place(Kind::text).text.assign(text, length);
    return true;
}

bool JsonTree::Key(const char* text, rapidjson::SizeType length, bool /*copy*/)
{
    JsonMember& member = added(m_open[m_depth - 1]->members);
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
        value = parent.kind == Kind::map ? &parent.members.back().value : &added(parent.items);
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
    m_fault = JsonFault{kind, std::move(words), gapAfterLast().end, pathTo(true)};
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
