#include "cppmicroservices/BundleVersion.h"

#include <algorithm>
#include <array>
#include <locale>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace cppmicroservices {

namespace {

constexpr std::size_t numberCount = 3;

/// The parts between the dots; a dot at the very end begins no further part.
std::vector<std::string> partsOf(std::string const& version)
{
    std::vector<std::string> parts;
    std::istringstream in(version);
    for (std::string part; std::getline(in, part, '.');) {
        parts.push_back(part);
    }
    return parts;
}

/// Reads a number as C++ streams do: leading blanks and anything after the digits are passed over.
bool readNumber(std::string const& part, unsigned int& number)
{
    std::istringstream in(part);
    in.imbue(std::locale::classic());
    in >> number;
    return !in.fail();
}

bool isQualifierCharacter(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-';
}

int compared(unsigned int l, unsigned int r)
{
    return l < r ? -1 : static_cast<int>(l > r);
}

} // namespace

BundleVersion BundleVersion::EmptyVersion()
{
    return BundleVersion(false);
}

BundleVersion BundleVersion::UndefinedVersion()
{
    return BundleVersion(true);
}

BundleVersion BundleVersion::ParseVersion(std::string const& version)
{
    const auto first = version.find_first_not_of(' ');
    if (first == std::string::npos) {
        return EmptyVersion();
    }
    return BundleVersion(version.substr(first, version.find_last_not_of(' ') - first + 1));
}

BundleVersion::BundleVersion(bool undefined) : m_undefined(undefined) {}

BundleVersion::BundleVersion(unsigned int majorVersion, unsigned int minorVersion, unsigned int microVersion)
    : m_major(majorVersion), m_minor(minorVersion), m_micro(microVersion)
{
}

BundleVersion::BundleVersion(unsigned int majorVersion, unsigned int minorVersion, unsigned int microVersion,
                             std::string qualifier)
    : m_major(majorVersion), m_minor(minorVersion), m_micro(microVersion), m_qualifier(std::move(qualifier))
{
    validate();
}

BundleVersion::BundleVersion(std::string const& version) : m_undefined(version.empty())
{
    if (m_undefined) {
        return;
    }
    const auto parts = partsOf(version);
    const std::array<unsigned int*, numberCount> numbers{&m_major, &m_minor, &m_micro};
    const auto given = std::min(parts.size(), numberCount);
    bool readable = false;
    for (std::size_t i = 0; i < given; ++i) {
        // Only the last number must be one: "1..2" is 1.0.2.
        readable = readNumber(parts[i], *numbers[i]);
    }
    if (!readable || parts.size() > numberCount + 1) {
        throw std::invalid_argument("invalid format");
    }
    if (parts.size() > numberCount) {
        m_qualifier = parts.back();
        validate();
    }
}

BundleVersion::BundleVersion(BundleVersion const& version) = default;

// Private, for the framework's own use: to everybody else a version is a value that does not change.
BundleVersion& BundleVersion::operator=(BundleVersion const& v) = default;

void BundleVersion::validate() const
{
    if (!std::all_of(m_qualifier.begin(), m_qualifier.end(), isQualifierCharacter)) {
        throw std::invalid_argument("invalid qualifier: " + m_qualifier);
    }
}

void BundleVersion::checkDefined() const
{
    if (m_undefined) {
        throw std::logic_error("Version undefined");
    }
}

bool BundleVersion::IsUndefined() const
{
    return m_undefined;
}

unsigned int BundleVersion::GetMajor() const
{
    checkDefined();
    return m_major;
}

unsigned int BundleVersion::GetMinor() const
{
    checkDefined();
    return m_minor;
}

unsigned int BundleVersion::GetMicro() const
{
    checkDefined();
    return m_micro;
}

std::string BundleVersion::GetQualifier() const
{
    checkDefined();
    return m_qualifier;
}

std::string BundleVersion::ToString() const
{
    if (m_undefined) {
        return "undefined";
    }
    std::string text = std::to_string(m_major) + '.' + std::to_string(m_minor) + '.' + std::to_string(m_micro);
    if (!m_qualifier.empty()) {
        text += '.' + m_qualifier;
    }
    return text;
}

bool BundleVersion::operator==(BundleVersion const& object) const
{
    if (object.m_undefined) {
        return m_undefined;
    }
    checkDefined();
    return Compare(object) == 0;
}

int BundleVersion::Compare(BundleVersion const& object) const
{
    if (this == &object) {
        return 0;
    }
    if (m_undefined || object.m_undefined) {
        throw std::logic_error("Cannot compare undefined version");
    }
    if (m_major != object.m_major) {
        return compared(m_major, object.m_major);
    }
    if (m_minor != object.m_minor) {
        return compared(m_minor, object.m_minor);
    }
    if (m_micro != object.m_micro) {
        return compared(m_micro, object.m_micro);
    }
    return m_qualifier.compare(object.m_qualifier);
}

std::ostream& operator<<(std::ostream& os, BundleVersion const& v)
{
    return os << v.ToString();
}

} // namespace cppmicroservices
