#pragma once

#include "cppmicroservices/AnyMap.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace cppmicroservices {

class Bundle;
class LDAPFilterData;
class ServiceReferenceBase;

namespace detail::ldap {
class FilterAccess;
}

/// A condition on properties, as `(name=Ada)` or `(&(colour=red)(!(size>=3)))`.
///
/// The text is read once, on construction; matching allocates nothing for a map with case-insensitive keys. Filters
/// are immutable apart from assignment, copies share their parsed form, and one filter may be used by several threads.
class US_Framework_EXPORT LDAPFilter {
public:
    /// A filter that is false, matches nothing and prints nothing.
    LDAPFilter();

    /// @throws std::invalid_argument that quotes the place where `filter` breaks the grammar.
    LDAPFilter(std::string const& filter);

    LDAPFilter(LDAPFilter const& other);
    ~LDAPFilter();
    LDAPFilter& operator=(LDAPFilter const& filter);

    /// True when the filter was made from a text.
    explicit operator bool() const;

    /// Matches the service's properties; names without regard to case. Works on a reference to an unregistered service.
    bool Match(ServiceReferenceBase const& reference) const;

    /// Matches the bundle's manifest headers; names without regard to case.
    ///
    /// @throws std::invalid_argument "invalid bundle" for a default constructed bundle.
    bool Match(Bundle const& bundle) const;

    /// Matches the map's entries; names without regard to case, whatever the map's type.
    ///
    /// @throws std::runtime_error when two keys of the map differ by case only.
    bool Match(AnyMap const& dictionary) const;

    /// Matches the map's entries; names exactly as written in the filter.
    bool MatchCase(AnyMap const& dictionary) const;

    /// The filter's text in normal form: without the blanks that do not count.
    std::string ToString() const;

    /// Equal when the normal forms are equal.
    bool operator==(LDAPFilter const& other) const;

protected:
    std::shared_ptr<LDAPFilterData> d;

private:
    friend class detail::ldap::FilterAccess;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, LDAPFilter const& filter);

} // namespace cppmicroservices
