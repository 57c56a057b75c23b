#pragma once

#include "cppmicroservices/FrameworkExport.h"

#include <iosfwd>
#include <string>

namespace cppmicroservices {

/// A version `major[.minor[.micro[.qualifier]]]`; missing parts are zero. Values do not change once made.
///
/// A version may be *undefined* (made from an empty string): it prints as "undefined".
class US_Framework_EXPORT BundleVersion {
public:
    /// 0.0.0.
    static BundleVersion EmptyVersion();
    static BundleVersion UndefinedVersion();

    BundleVersion(unsigned int majorVersion, unsigned int minorVersion, unsigned int microVersion);

    /// @throws std::invalid_argument "invalid qualifier: <qualifier>" when it holds anything but ASCII letters, digits,
    ///         '_' and '-'.
    BundleVersion(unsigned int majorVersion, unsigned int minorVersion, unsigned int microVersion,
                  std::string qualifier);

    /// Reads `version`; an empty one makes an undefined version. Each number may have white space in front of it and
    /// other characters behind it; a part that is no number counts as 0, except for the last one.
    ///
    /// @throws std::invalid_argument "invalid format", or as above for the qualifier.
    BundleVersion(std::string const& version);

    BundleVersion(BundleVersion const& version);

    /// As the constructor from a string, but without the blanks around `version`; if nothing remains: EmptyVersion().
    static BundleVersion ParseVersion(std::string const& version);

    bool IsUndefined() const;

    /// The getters throw std::logic_error "Version undefined" for an undefined version.
    unsigned int GetMajor() const;
    unsigned int GetMinor() const;
    unsigned int GetMicro() const;
    std::string GetQualifier() const;

    /// "undefined", or `major.minor.micro[.qualifier]`.
    std::string ToString() const;

    bool operator==(BundleVersion const& object) const;

    /// Negative, zero or positive: numbers by value, then the qualifier by bytes.
    ///
    /// @throws std::logic_error "Cannot compare undefined version" when either one is undefined.
    int Compare(BundleVersion const& object) const;

private:
    friend class BundlePrivate;

    explicit BundleVersion(bool undefined = false);
    BundleVersion& operator=(BundleVersion const& v);

    void validate() const;
    void checkDefined() const;

    unsigned int m_major = 0;
    unsigned int m_minor = 0;
    unsigned int m_micro = 0;
    std::string m_qualifier;
    bool m_undefined = false;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, BundleVersion const& v);

} // namespace cppmicroservices
