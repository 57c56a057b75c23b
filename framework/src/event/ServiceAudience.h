#pragma once

#include "event/Listener.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace cppmicroservices::detail::core {

class ListenerRegistry;

/// The listeners that may want the events of one service, as they were at one time, the last added first; no one is
/// there twice.
///
/// Usually a few snapshots that are merged. Where memory is short for them, or the service has more classes with
/// listeners of their own than there is room for, the registry is asked for one listener after the other.
class ServiceAudience {
public:
    using List = ListenerList<FilteredListener>;

    ServiceAudience() = default;

    /// Those with a lower id. `classes` has to outlive this.
    ServiceAudience(ListenerRegistry& registry, long shownId, std::vector<std::string> const& classes,
                    ListenerTokenId below)
        : m_registry(&registry), m_shownId(shownId), m_classes(&classes), m_below(below)
    {
    }

    /// @param snapshot null for none
    void add(List::Snapshot snapshot)
    {
        if (!snapshot) {
            return;
        }
        m_isWhole = m_count < m_runs.size();
        if (m_isWhole) {
            m_runs[m_count++] = std::move(snapshot);
        }
    }

    /// Whether there was room for all that was added.
    bool isWhole() const { return m_isWhole; }

    bool isEmpty() const { return m_count == 0 && m_registry == nullptr; }

    /// Calls `visit` with each that has not been removed meanwhile. May be called again.
    template <class Visit>
    void forEach(Visit&& visit) const
    {
        if (m_registry == nullptr) {
            forEachInRuns(visit);
            return;
        }
        for (auto listener = next(m_below); listener; listener = next(listener->id)) {
            if (!listener->removed.load()) {
                visit(*listener);
            }
        }
    }

private:
    template <class Visit>
    void forEachInRuns(Visit& visit) const
    {
        std::array<std::size_t, most> at{};
        for (;;) {
            FilteredListener const* newest = nullptr;
            std::size_t from = 0;
            for (std::size_t i = 0; i < m_count; ++i) {
                auto const& run = *m_runs[i];
                if (at[i] < run.size() && (newest == nullptr || run[at[i]]->id > newest->id)) {
                    newest = run[at[i]].get();
                    from = i;
                }
            }
            if (newest == nullptr) {
                return;
            }
            ++at[from];
            if (!newest->removed.load()) {
                visit(*newest);
            }
        }
    }

    List::Entry next(ListenerTokenId below) const;

    static constexpr std::size_t most = 6; // those without a class, those of the id, and of four classes

    std::array<List::Snapshot, most> m_runs; // each ordered, none empty; the first m_count
    std::size_t m_count = 0;
    bool m_isWhole = true;
    ListenerRegistry* m_registry = nullptr; // who is asked when there are no runs
    long m_shownId = 0;
    std::vector<std::string> const* m_classes = nullptr;
    ListenerTokenId m_below = 0;
};

} // namespace cppmicroservices::detail::core
