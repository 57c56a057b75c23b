#pragma once

#include "cppmicroservices/LDAPFilter.h"
#include "cppmicroservices/ListenerToken.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace cppmicroservices {

class BundleContextPrivate;
class BundleEvent;
class FrameworkEvent;
class ServiceEvent;

namespace detail::core {

class BundleRecord;

/// What all listeners have. Immutable but for `removed`.
struct ListenerBase {
    enum class Kind { service, bundle, framework };

    Kind kind = Kind::service;
    ListenerTokenId id = 0;
    BundleContextPrivate const* owner = nullptr; ///< never followed; a context takes its listeners along
    std::shared_ptr<BundleRecord> bundle;        ///< that of the context
    void const* receiver = nullptr;              ///< of a member function; null for another callable
    std::atomic<bool> removed{false};            ///< not to be called any more
};

template <class Event>
struct Listener : ListenerBase {
    std::function<void(Event const&)> call;
};

struct FilteredListener : Listener<ServiceEvent> {
    LDAPFilter filter; ///< false: all services
};

/// Listeners, the last added first. No lock of its own.
///
/// Who delivers an event takes a snapshot, which is made anew only after a change; so a change costs O(log n), and an
/// event costs no allocation while the listeners stay the same.
template <class L>
class ListenerList {
public:
    using Entry = std::shared_ptr<L>;
    /// Null for none.
    using Snapshot = std::shared_ptr<std::vector<Entry> const>;

    void add(Entry listener)
    {
        m_snapshot.reset();
        auto const id = listener->id;
        m_entries.emplace_hint(m_entries.begin(), id, std::move(listener));
    }

    void remove(ListenerTokenId id)
    {
        m_snapshot.reset();
        m_entries.erase(id);
    }

    bool isEmpty() const { return m_entries.empty(); }

    /// The last added of those with a lower id, or null.
    Entry next(ListenerTokenId below) const
    {
        auto const found = m_entries.upper_bound(below);
        return found != m_entries.end() ? found->second : nullptr;
    }

    /// @throws std::bad_alloc
    Snapshot snapshot()
    {
        if (!m_snapshot && !m_entries.empty()) {
            std::vector<Entry> all;
            all.reserve(m_entries.size());
            for (auto const& entry : m_entries) {
                all.push_back(entry.second);
            }
            m_snapshot = std::make_shared<std::vector<Entry> const>(std::move(all));
        }
        return m_snapshot;
    }

private:
    std::map<ListenerTokenId, Entry, std::greater<>> m_entries;
    Snapshot m_snapshot;
};

} // namespace detail::core

} // namespace cppmicroservices
