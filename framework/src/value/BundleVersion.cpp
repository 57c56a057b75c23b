#include "cppmicroservices/BundleVersion.h"

#include "bundle_reader/manifest/Version.h"

#include <ostream>
#include <stdexcept>
#include <utility>

namespace cppmicroservices {

namespace {

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
    auto reading = ostrel::bundle_reader::readVersion(version);
    if (!reading.fault.empty()) {
        throw std::invalid_argument(reading.fault);
    }
    m_major = reading.version.numbers[0];
    m_minor = reading.version.numbers[1];
    m_micro = reading.version.numbers[2];
    m_qualifier = std::move(reading.version.qualifier);
}

BundleVersion::BundleVersion(BundleVersion const& version) = default;

// Private, for the framework's own use: to everybody else a version is a value that does not change.
BundleVersion& BundleVersion::operator=(BundleVersion const& v) = default;

void BundleVersion::validate() const
{
    if (auto const fault = ostrel::bundle_reader::qualifierFault(m_qualifier); !fault.empty()) {
        throw std::invalid_argument(fault);
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
    return toText(ostrel::bundle_reader::Version{m_undefined, {m_major, m_minor, m_micro}, m_qualifier});
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
