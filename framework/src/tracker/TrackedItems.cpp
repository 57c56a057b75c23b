#include "cppmicroservices/detail/TrackedItems.h"

#include "value/Reason.h"

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleEvent.h"
#include "cppmicroservices/ServiceEvent.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

namespace cppmicroservices::detail {

namespace {

// False for a service that is unregistered: no event will come for it again.
bool mayStillGo(ServiceReferenceBase const& service)
{
    return static_cast<bool>(service);
}

// The events of a bundle are sent one after the other, so none is overtaken.
bool mayStillGo(Bundle const&)
{
    return true;
}

} // namespace

/// A call by the listener, known to the items while it lasts. It lies on the stack of its thread, so that hearing of an
/// event needs no memory.
template <class Item, class Event>
class TrackedItems<Item, Event>::ListenerCall {
public:
    explicit ListenerCall(TrackedItems& items) : m_items(items)
    {
        std::lock_guard<std::mutex> const lock(m_items.m_mutex);
        if (!m_items.m_closed) {
            m_outer = std::exchange(m_items.m_calls, this);
            m_entered = true;
        }
    }

    ListenerCall(ListenerCall const&) = delete;
    ListenerCall& operator=(ListenerCall const&) = delete;

    ~ListenerCall()
    {
        if (!m_entered) {
            return;
        }
        std::lock_guard<std::mutex> const lock(m_items.m_mutex);
        auto** at = &m_items.m_calls;
        while (*at != this) {
            at = &(*at)->m_outer;
        }
        *at = m_outer;
        if (m_items.m_calls == nullptr) {
            m_items.m_changed.notify_all();
        }
    }

    explicit operator bool() const { return m_entered; }

    /// Whether one of the chain that begins with `first` is of this thread.
    static bool anyIsOfThisThread(ListenerCall const* first)
    {
        while (first != nullptr && first->m_thread != std::this_thread::get_id()) {
            first = first->m_outer;
        }
        return first != nullptr;
    }

private:
    TrackedItems& m_items;
    std::thread::id const m_thread = std::this_thread::get_id();
    ListenerCall* m_outer = nullptr;
    bool m_entered = false;
};

template <class Item, class Event>
TrackedItems<Item, Event>::TrackedItems(std::unique_ptr<Customizer> customizer) : m_customizer(std::move(customizer))
{
}

template <class Item, class Event>
TrackedItems<Item, Event>::~TrackedItems() = default;

template <class Item, class Event>
void TrackedItems<Item, Event>::addInitial(std::vector<Item> items)
{
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_knowsInitial = true;
        for (auto const& item : items) {
            if (m_gone.count(item) == 0 && m_tracked.count(item) == 0 && m_adding.count(item) == 0) {
                m_initial.insert(item);
            }
        }
        m_gone.clear();
    }
    for (auto const& item : items) {
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            if (m_closed || m_initial.count(item) == 0) {
                continue; // closed, or an event was quicker
            }
            m_adding.insert(item);
            m_initial.erase(item);
        }
        try {
            add(item, Event());
        } catch (...) {
            std::lock_guard<std::mutex> const lock(m_mutex);
            m_initial.clear();
            throw;
        }
    }
}

template <class Item, class Event>
void TrackedItems<Item, Event>::onCame(Item const& item, Event const& event)
{
    ListenerCall const call(*this);
    if (call) {
        came(item, event);
    }
}

template <class Item, class Event>
void TrackedItems<Item, Event>::onWent(Item const& item, Event const& event)
{
    ListenerCall const call(*this);
    if (call) {
        remove(item, event);
    }
}

template <class Item, class Event>
void TrackedItems<Item, Event>::came(Item const& item, Event const& event)
{
    Object object;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (m_closed) {
            return;
        }
        auto const found = m_tracked.find(item);
        if (found != m_tracked.end()) {
            object = found->second.object;
            ++m_changes;
        } else {
            bool const isNew = m_adding.insert(item).second;
            m_initial.erase(item);
            m_gone.erase(item);
            if (!isNew) {
                return; // the customizer looks at it already
            }
        }
    }
    if (object) {
        m_customizer->modified(item, event, object);
    } else {
        add(item, event);
    }
}

template <class Item, class Event>
void TrackedItems<Item, Event>::add(Item const& item, Event const& event)
{
    Object object;
    try {
        object = m_customizer->adding(item, event);
    } catch (...) {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_adding.erase(item);
        throw;
    }
    bool overtaken = false;
    std::exception_ptr noMemory;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        bool const stayed = m_adding.erase(item) == 1;
        if (!object) {
            return;
        }
        overtaken = !stayed || m_closed;
        if (!overtaken) {
            noMemory = core::caughtFrom([&] { m_tracked.emplace(item, Tracked{object, m_added++}); });
        }
        if (!overtaken && !noMemory) {
            ++m_changes;
            m_changed.notify_all(); // who waits for a service wants one that is there
        }
    }
    if (overtaken || noMemory) {
        m_customizer->removed(item, event, object);
        if (noMemory) {
            std::rethrow_exception(noMemory);
        }
    } else if (!mayStillGo(item)) {
        remove(item, event); // the event of its going came before that of its coming, from another thread
    }
}

template <class Item, class Event>
void TrackedItems<Item, Event>::remove(Item const& item, Event const& event)
{
    typename std::unordered_map<Item, Tracked>::node_type taken;
    Object best; // goes after the lock, as it may be the last of its service
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (!m_knowsInitial) {
            // Without memory for it, the item is found to be gone after it was added.
            (void)core::caughtFrom([&] { m_gone.insert(item); });
        }
        if (m_initial.erase(item) != 0 || m_adding.erase(item) != 0) {
            return;
        }
        taken = m_tracked.extract(item);
        if (!taken) {
            return;
        }
        ++m_changes;
        best.swap(m_best);
    }
    m_customizer->removed(taken.key(), event, taken.mapped().object);
}

template <class Item, class Event>
bool TrackedItems<Item, Event>::keepListener(ListenerToken& token)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (m_closed) {
        return false;
    }
    m_listener = std::move(token);
    return true;
}

template <class Item, class Event>
bool TrackedItems<Item, Event>::close()
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (m_closed) {
        return false;
    }
    m_closed = true;
    m_initial.clear();
    m_changed.notify_all();
    return true;
}

template <class Item, class Event>
ListenerToken TrackedItems<Item, Event>::takeListener()
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return std::move(m_listener);
}

template <class Item, class Event>
void TrackedItems<Item, Event>::awaitListener()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!ListenerCall::anyIsOfThisThread(m_calls)) {
        m_changed.wait(lock, [this] { return m_calls == nullptr; });
    }
}

template <class Item, class Event>
void TrackedItems<Item, Event>::removeAll(Event const& event)
{
    std::exception_ptr first;
    auto const removeOne = [&](Item const& item) {
        auto const thrown = core::caughtFrom([&] { remove(item, event); });
        first = first ? first : thrown;
    };
    (void)core::caughtFrom([&] {
        for (auto const& entry : entries()) {
            removeOne(entry.item);
        }
    });
    while (auto const item = lastAdded()) { // there was no memory for a list of all
        removeOne(*item);
    }
    if (first) {
        std::rethrow_exception(first);
    }
}

template <class Item, class Event>
bool TrackedItems<Item, Event>::isClosed() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_closed;
}

template <class Item, class Event>
std::size_t TrackedItems<Item, Event>::size() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_tracked.size();
}

template <class Item, class Event>
int TrackedItems<Item, Event>::count() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_closed ? -1 : static_cast<int>(m_changes);
}

template <class Item, class Event>
typename TrackedItems<Item, Event>::Object TrackedItems<Item, Event>::find(Item const& item) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const found = m_tracked.find(item);
    return found != m_tracked.end() ? found->second.object : nullptr;
}

template <class Item, class Event>
std::vector<typename TrackedItems<Item, Event>::Entry> TrackedItems<Item, Event>::entries() const
{
    std::vector<std::pair<std::uint64_t, Entry>> numbered;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        numbered.reserve(m_tracked.size());
        for (auto const& [item, tracked] : m_tracked) {
            numbered.emplace_back(tracked.number, Entry{item, tracked.object});
        }
    }
    std::sort(numbered.begin(), numbered.end(), [](auto const& a, auto const& b) { return a.first > b.first; });
    std::vector<Entry> result;
    result.reserve(numbered.size());
    for (auto& entry : numbered) {
        result.push_back(std::move(entry.second));
    }
    return result;
}

template <class Item, class Event>
std::optional<Item> TrackedItems<Item, Event>::lastAdded() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const last = std::max_element(m_tracked.begin(), m_tracked.end(),
                                       [](auto const& a, auto const& b) { return a.second.number < b.second.number; });
    return last != m_tracked.end() ? std::optional<Item>(last->first) : std::nullopt;
}

template <class Item, class Event>
typename TrackedItems<Item, Event>::Object TrackedItems<Item, Event>::best() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_bestAsOf == m_changes ? m_best : nullptr;
}

template <class Item, class Event>
void TrackedItems<Item, Event>::rememberBest(Object object, std::uint64_t asOf)
{
    // The former one leaves by the parameter, after the lock.
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (asOf == m_changes) {
        m_best.swap(object);
        m_bestAsOf = asOf;
    }
}

template <class Item, class Event>
std::uint64_t TrackedItems<Item, Event>::changes() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_changes;
}

template <class Item, class Event>
bool TrackedItems<Item, Event>::awaitChange(std::uint64_t since, std::chrono::steady_clock::time_point until) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_until(lock, until, [this, since] { return m_closed || m_changes != since; });
}

template class US_Framework_EXPORT TrackedItems<ServiceReferenceBase, ServiceEvent>;
template class US_Framework_EXPORT TrackedItems<Bundle, BundleEvent>;

} // namespace cppmicroservices::detail
