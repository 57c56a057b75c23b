#pragma once

#include "event/Listener.h"

#include <memory>

namespace cppmicroservices::detail::core {

class ListenerRegistry;

/// The listeners of one kind as they were at one time, the last added first: those to whom an event is delivered.
///
/// Usually a snapshot. Where memory is short for one, the registry is asked for one listener after the other: that is
/// slower, and needs none. So an event reaches everybody even then.
template <class L>
class Audience {
public:
    using Entry = std::shared_ptr<L>;

    /// Nobody when it is null.
    explicit Audience(typename ListenerList<L>::Snapshot snapshot) : m_snapshot(std::move(snapshot)) {}

    /// Those with a lower id.
    Audience(ListenerRegistry& registry, ListenerTokenId below) : m_registry(&registry), m_below(below) {}

    bool isEmpty() const { return !m_snapshot && m_registry == nullptr; }

    /// Calls `visit` with each that has not been removed meanwhile. May be called again.
    template <class Visit>
    void forEach(Visit&& visit) const
    {
        if (m_snapshot) {
            for (auto const& listener : *m_snapshot) {
                visitUnlessRemoved(visit, *listener);
            }
        } else if (m_registry != nullptr) {
            for (auto listener = next(m_below); listener; listener = next(listener->id)) {
                visitUnlessRemoved(visit, *listener);
            }
        }
    }

private:
    template <class Visit>
    static void visitUnlessRemoved(Visit& visit, L const& listener)
    {
        if (!listener.removed.load()) {
            visit(listener);
        }
    }

    Entry next(ListenerTokenId below) const;

    typename ListenerList<L>::Snapshot m_snapshot;
    ListenerRegistry* m_registry = nullptr;
    ListenerTokenId m_below = 0;
};

} // namespace cppmicroservices::detail::core
