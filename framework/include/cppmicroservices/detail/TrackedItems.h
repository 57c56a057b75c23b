#pragma once

#include "cppmicroservices/FrameworkExport.h"
#include "cppmicroservices/ListenerToken.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace cppmicroservices {

class Bundle;
class BundleContext;
class BundleEvent;
class ServiceEvent;
class ServiceReferenceBase;

namespace detail {

/// What a tracker tracks from one opening to its closing, whatever the types: the items and the object kept for each.
///
/// The customizer is never called with the mutex held. So an item can change or go while the customizer still makes its
/// object: a change is not reported then; when it has gone, what was made is taken back at once.
template <class Item, class Event>
class US_Framework_EXPORT TrackedItems {
public:
    using Object = std::shared_ptr<void const>;

    class Customizer {
    public:
        virtual ~Customizer() = default;

        /// Null: the item is not to be tracked.
        virtual Object adding(Item const& item, Event const& event) = 0;
        virtual void modified(Item const& item, Event const& event, Object const& object) = 0;
        virtual void removed(Item const& item, Event const& event, Object const& object) = 0;
    };

    struct Entry {
        Item item;
        Object object;
    };

    explicit TrackedItems(std::unique_ptr<Customizer> customizer);
    ~TrackedItems();
    TrackedItems(TrackedItems const&) = delete;
    TrackedItems& operator=(TrackedItems const&) = delete;

    /// Takes what was there when the tracker was opened, and adds it one by one. To be called once, when the listener
    /// is in place: what went since then is left out, and so is what came by an event already.
    ///
    /// @throws what the customizer throws, or std::bad_alloc; the rest is not added then
    void addInitial(std::vector<Item> items);

    // Called by the listener; without effect once the tracking is closed.
    void onCame(Item const& item, Event const& event);
    void onWent(Item const& item, Event const& event);

    /// Takes an item out, even from a closed tracking.
    void remove(Item const& item, Event const& event);

    /// Keeps the token of the listener. False when the tracking is closed already: the token is then left as it is.
    bool keepListener(ListenerToken& token);

    /// Closes the tracking to events and ends all waiting.
    ///
    /// @return false when it was closed before
    bool close();

    /// The listener to be removed, once; a false token else.
    ListenerToken takeListener();

    /// Waits until no other thread is in a call by the listener; at once in such a call itself, which could not end.
    void awaitListener();

    /// Takes out everything and tells the customizer. What it throws is kept until all are out. Without memory, each
    /// item is looked for among all.
    ///
    /// @throws the first exception of the customizer
    void removeAll(Event const& event);

    bool isClosed() const;
    std::size_t size() const;

    /// How often an item was added, changed or removed; -1 when closed.
    int count() const;

    /// Null when the item is not tracked.
    Object find(Item const& item) const;

    /// From the last added to the first.
    std::vector<Entry> entries() const;

    /// The object of the item that was best at the time, unless something was added, changed or removed since.
    Object best() const;

    /// @param asOf the changes() before the best one was looked for
    void rememberBest(Object object, std::uint64_t asOf);
    std::uint64_t changes() const;

    /// Waits for other changes() than that, or for the closing.
    ///
    /// @return false when the time came first
    bool awaitChange(std::uint64_t since, std::chrono::steady_clock::time_point until) const;

private:
    struct Tracked {
        Object object;
        std::uint64_t number; // by which the order of adding is known
    };
    class ListenerCall;

    /// The item that was added last, if there is one. Needs no memory.
    std::optional<Item> lastAdded() const;

    void came(Item const& item, Event const& event);
    void add(Item const& item, Event const& event);

    std::unique_ptr<Customizer> const m_customizer;

    mutable std::mutex m_mutex; // guards what follows
    mutable std::condition_variable m_changed;
    std::unordered_map<Item, Tracked> m_tracked;
    std::unordered_set<Item> m_adding;  // the customizer makes their objects
    std::unordered_set<Item> m_initial; // not yet added
    std::unordered_set<Item> m_gone;    // before the initial ones were known
    ListenerCall* m_calls = nullptr;    // calls by the listener that are under way, as a chain
    ListenerToken m_listener;
    std::uint64_t m_changes = 0;
    std::uint64_t m_added = 0;
    Object m_best;
    std::uint64_t m_bestAsOf = 0;
    bool m_knowsInitial = false;
    bool m_closed = false;
};

using TrackedServices = TrackedItems<ServiceReferenceBase, ServiceEvent>;
using TrackedBundles = TrackedItems<Bundle, BundleEvent>;

} // namespace detail
} // namespace cppmicroservices
