#pragma once

#include "event/Listener.h"

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace cppmicroservices::detail::core {

/// The listeners that may want the events of one service, the last added first; no one is there twice.
class ServiceListenerCandidates {
public:
    using List = ListenerList<FilteredListener>;

    void add(List::Snapshot snapshot);
    bool isEmpty() const { return m_runs.empty(); }

    /// Calls `visit` with each. May be called again.
    template <class Visit>
    void forEach(Visit&& visit) const
    {
        std::vector<std::size_t> next(m_runs.size(), 0);
        for (;;) {
            FilteredListener* first = nullptr;
            std::size_t from = 0;
            for (std::size_t i = 0; i < m_runs.size(); ++i) {
                auto const& run = *m_runs[i];
                if (next[i] < run.size() && (first == nullptr || run[next[i]]->id > first->id)) {
                    first = run[next[i]].get();
                    from = i;
                }
            }
            if (first == nullptr) {
                return;
            }
            ++next[from];
            visit(*first);
        }
    }

private:
    std::vector<List::Snapshot> m_runs; // each ordered, none empty
};

/// Service listeners by what their filters demand, so that an event passes by those that it cannot concern. No lock of
/// its own.
class ServiceListenerIndex {
public:
    using Entry = ServiceListenerCandidates::List::Entry;

    void add(Entry const& listener);
    void remove(FilteredListener const& listener);

    /// @param shownId, classes  the service's properties "service.id" and "objectclass"
    ServiceListenerCandidates candidates(long shownId, std::vector<std::string> const& classes);

private:
    using List = ServiceListenerCandidates::List;

    std::unordered_map<long, List> m_byId;
    std::unordered_map<std::string, List> m_byClass; // those whose filter demands just this class
    List m_others;
};

} // namespace cppmicroservices::detail::core
