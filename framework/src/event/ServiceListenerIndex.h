#pragma once

#include "event/ServiceAudience.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices::detail::core {

/// Service listeners by what their filters demand, so that an event passes by those that it cannot concern. No lock of
/// its own.
class ServiceListenerIndex {
public:
    using List = ServiceAudience::List;
    using Entry = List::Entry;

    /// @throws std::bad_alloc, and nothing is changed
    void add(Entry const& listener);
    void remove(FilteredListener const& listener);

    /// None when there are more lists than an audience has room for.
    ///
    /// @param shownId, classes  the service's properties "service.id" and "objectclass"
    /// @throws std::bad_alloc
    std::optional<ServiceAudience> audience(long shownId, std::vector<std::string> const& classes);

    /// The last added of those with a lower id that would be in the audience, or null. Needs no memory.
    Entry next(long shownId, std::vector<std::string> const& classes, ListenerTokenId below);

private:
    /// Calls `visit` with each list that concerns the service.
    template <class Visit>
    void forEachList(long shownId, std::vector<std::string> const& classes, Visit&& visit);

    std::unordered_map<long, List> m_byId;
    std::unordered_map<std::string, List> m_byClass; // those whose filter demands just this class
    List m_others;
};

} // namespace cppmicroservices::detail::core
