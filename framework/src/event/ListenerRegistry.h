#pragma once

#include "event/Audience.h"
#include "event/Listener.h"
#include "event/ServiceListenerIndex.h"

#include "cppmicroservices/ListenerFunctors.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace cppmicroservices {

class BundleContextPrivate;

namespace detail::core {

/// The listeners of one framework. All functions may be called from any thread; no foreign code runs under the lock,
/// destructors of listeners included.
class ListenerRegistry {
public:
    // Each returns the id for the token, and throws std::runtime_error when the context has come to its end; nothing is
    // changed then, nor by std::bad_alloc. The receiver is null, or that of a member function.

    /// Takes the place of the context's listener for the same receiver, if there is one.
    ///
    /// @throws std::invalid_argument for a malformed filter
    ListenerTokenId add(BundleContextPrivate const& context, ServiceListener const& listener, void const* receiver,
                        std::string const& filter);
    ListenerTokenId add(BundleContextPrivate const& context, BundleListener const& listener, void const* receiver);
    ListenerTokenId add(BundleContextPrivate const& context, FrameworkListener const& listener, void const* receiver);

    /// Removes the context's listener with that id, if there is one.
    void remove(BundleContextPrivate const& context, ListenerTokenId id);

    // Each removes the context's last listener for the receiver, or without one for the same function or a callable of
    // the same type; callables cannot be told apart otherwise.
    void remove(BundleContextPrivate const& context, ServiceListener const& listener, void const* receiver);
    void remove(BundleContextPrivate const& context, BundleListener const& listener, void const* receiver);
    void remove(BundleContextPrivate const& context, FrameworkListener const& listener, void const* receiver);

    /// Removes all that the context added. Needs no memory, like the other removals.
    void removeAllOf(BundleContextPrivate const& context) noexcept;

    /// The same, and refuses further ones.
    void end(BundleContextPrivate& context) noexcept;

    // Those to whom an event is to be delivered, as they are now.
    Audience<Listener<BundleEvent>> bundleListeners();
    Audience<Listener<FrameworkEvent>> frameworkListeners();

    /// @param shownId, classes  the service's properties "service.id" and "objectclass"; the latter has to outlive the
    ///     result
    ServiceAudience serviceListeners(long shownId, std::vector<std::string> const& classes);

    // For an audience without a snapshot: the last added of those with a lower id, or null.
    void next(ListenerTokenId below, std::shared_ptr<Listener<BundleEvent>>& found);
    void next(ListenerTokenId below, std::shared_ptr<Listener<FrameworkEvent>>& found);
    std::shared_ptr<FilteredListener> nextServiceListener(long shownId, std::vector<std::string> const& classes,
                                                          ListenerTokenId below);

private:
    using Entry = std::shared_ptr<ListenerBase>;
    using Entries = std::map<std::pair<BundleContextPrivate const*, ListenerTokenId>, Entry>;

    template <class L>
    std::shared_ptr<L> make(ListenerBase::Kind kind, BundleContextPrivate const& context, void const* receiver);

    /// The context's listeners; the lock is held.
    std::pair<Entries::iterator, Entries::iterator> of(BundleContextPrivate const& context);

    /// Takes the listener out; the lock is held. The caller lets go of the result after the lock.
    Entries::node_type take(Entries::iterator at);

    /// Adds the listener, to the list or index of its kind as well; the lock is held.
    template <class List, class L>
    void addLocked(BundleContextPrivate const& context, std::shared_ptr<L> const& entry, List& ofItsKind);

    template <class L>
    Audience<L> audience(ListenerList<L>& all);

    template <class Event>
    void removeLast(BundleContextPrivate const& context, ListenerBase::Kind kind,
                    std::function<void(Event const&)> const& listener, void const* receiver);

    std::mutex m_mutex; // guards all below
    Entries m_entries;
    ServiceListenerIndex m_service;
    ListenerList<Listener<BundleEvent>> m_bundle;
    ListenerList<Listener<FrameworkEvent>> m_framework;
};

} // namespace detail::core

} // namespace cppmicroservices
