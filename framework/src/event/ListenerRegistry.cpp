#include "event/ListenerRegistry.h"

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"

#include <atomic>
#include <limits>
#include <new>
#include <optional>
#include <stdexcept>
#include <typeinfo>

namespace cppmicroservices::detail::core {

namespace {

using Kind = ListenerBase::Kind;

/// Drawn per process, so that a token never stands for a listener of another framework.
std::atomic<ListenerTokenId> lastId{0};

/// Above the ids of all listeners that were added so far.
ListenerTokenId aboveAll()
{
    return lastId.load() + 1;
}

template <class Event>
bool isSameCallable(std::function<void(Event const&)> const& a, std::function<void(Event const&)> const& b)
{
    using Function = void (*)(Event const&);
    if (a.target_type() != b.target_type()) {
        return false;
    }
    Function const* const plain = a.template target<Function>();
    return plain == nullptr || *plain == *b.template target<Function>();
}

} // namespace

template <class L>
std::shared_ptr<L> ListenerRegistry::make(Kind kind, BundleContextPrivate const& context, void const* receiver)
{
    auto listener = std::make_shared<L>();
    listener->kind = kind;
    listener->id = ++lastId;
    listener->owner = &context;
    listener->bundle = context.bundle();
    listener->receiver = receiver;
    return listener;
}

std::pair<ListenerRegistry::Entries::iterator, ListenerRegistry::Entries::iterator>
ListenerRegistry::of(BundleContextPrivate const& context)
{
    return {m_entries.lower_bound({&context, 0}),
            m_entries.upper_bound({&context, std::numeric_limits<ListenerTokenId>::max()})};
}

template <class List, class L>
void ListenerRegistry::addLocked(BundleContextPrivate const& context, std::shared_ptr<L> const& entry, List& ofItsKind)
{
    if (!context.mayListen()) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
    auto const at = m_entries.emplace(std::make_pair(entry->owner, entry->id), entry).first;
    try {
        ofItsKind.add(entry);
    } catch (...) {
        m_entries.erase(at);
        throw;
    }
}

ListenerRegistry::Entries::node_type ListenerRegistry::take(Entries::iterator at)
{
    auto node = m_entries.extract(at);
    auto& entry = *node.mapped();
    entry.removed.store(true);
    switch (entry.kind) {
    case Kind::service:
        m_service.remove(static_cast<FilteredListener const&>(entry));
        break;
    case Kind::bundle:
        m_bundle.remove(entry.id);
        break;
    case Kind::framework:
        m_framework.remove(entry.id);
        break;
    }
    return node;
}

ListenerTokenId ListenerRegistry::add(BundleContextPrivate const& context, ServiceListener const& listener,
                                      void const* receiver, std::string const& filter)
{
    auto const entry = make<FilteredListener>(Kind::service, context, receiver);
    entry->call = listener;
    if (!filter.empty()) {
        entry->filter = LDAPFilter(filter);
    }
    Entries::node_type replaced; // declared before the lock, as it may be destroyed
    std::lock_guard<std::mutex> const lock(m_mutex);
    addLocked(context, entry, m_service);
    if (receiver != nullptr) {
        auto const [begin, end] = of(context);
        for (auto at = begin; at != end; ++at) {
            if (at->second != entry && at->second->kind == Kind::service && at->second->receiver == receiver) {
                replaced = take(at);
                break;
            }
        }
    }
    return entry->id;
}

ListenerTokenId ListenerRegistry::add(BundleContextPrivate const& context, BundleListener const& listener,
                                      void const* receiver)
{
    auto const entry = make<Listener<BundleEvent>>(Kind::bundle, context, receiver);
    entry->call = listener;
    std::lock_guard<std::mutex> const lock(m_mutex);
    addLocked(context, entry, m_bundle);
    return entry->id;
}

ListenerTokenId ListenerRegistry::add(BundleContextPrivate const& context, FrameworkListener const& listener,
                                      void const* receiver)
{
    auto const entry = make<Listener<FrameworkEvent>>(Kind::framework, context, receiver);
    entry->call = listener;
    std::lock_guard<std::mutex> const lock(m_mutex);
    addLocked(context, entry, m_framework);
    return entry->id;
}

void ListenerRegistry::remove(BundleContextPrivate const& context, ListenerTokenId id)
{
    Entries::node_type removed;
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const found = m_entries.find({&context, id});
    if (found != m_entries.end()) {
        removed = take(found);
    }
}

template <class Event>
void ListenerRegistry::removeLast(BundleContextPrivate const& context, Kind kind,
                                  std::function<void(Event const&)> const& listener, void const* receiver)
{
    Entries::node_type removed;
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const [begin, end] = of(context);
    for (auto at = end; at != begin;) {
        --at;
        auto const& entry = *at->second;
        if (entry.kind != kind || entry.receiver != receiver) {
            continue;
        }
        if (receiver != nullptr || isSameCallable(static_cast<Listener<Event> const&>(entry).call, listener)) {
            removed = take(at);
            return;
        }
    }
}

void ListenerRegistry::remove(BundleContextPrivate const& context, ServiceListener const& listener,
                              void const* receiver)
{
    removeLast(context, Kind::service, listener, receiver);
}

void ListenerRegistry::remove(BundleContextPrivate const& context, BundleListener const& listener, void const* receiver)
{
    removeLast(context, Kind::bundle, listener, receiver);
}

void ListenerRegistry::remove(BundleContextPrivate const& context, FrameworkListener const& listener,
                              void const* receiver)
{
    removeLast(context, Kind::framework, listener, receiver);
}

void ListenerRegistry::removeAllOf(BundleContextPrivate const& context) noexcept
{
    Entries removed; // takes what is taken out without a copy
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto [at, end] = of(context);
    while (at != end) {
        removed.insert(take(at++));
    }
}

void ListenerRegistry::end(BundleContextPrivate& context) noexcept
{
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        context.refuseListeners();
    }
    removeAllOf(context);
}

template <class L>
Audience<L> ListenerRegistry::audience(ListenerList<L>& all)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    try {
        return Audience<L>(all.snapshot());
    } catch (std::bad_alloc const&) {
        return Audience<L>(*this, aboveAll());
    }
}

Audience<Listener<BundleEvent>> ListenerRegistry::bundleListeners()
{
    return audience(m_bundle);
}

Audience<Listener<FrameworkEvent>> ListenerRegistry::frameworkListeners()
{
    return audience(m_framework);
}

ServiceAudience ListenerRegistry::serviceListeners(long shownId, std::vector<std::string> const& classes)
{
    std::optional<ServiceAudience> audience;
    std::lock_guard<std::mutex> const lock(m_mutex);
    try {
        audience = m_service.audience(shownId, classes);
    } catch (std::bad_alloc const&) {
        audience.reset();
    }
    return audience ? *std::move(audience) : ServiceAudience(*this, shownId, classes, aboveAll());
}

void ListenerRegistry::next(ListenerTokenId below, std::shared_ptr<Listener<BundleEvent>>& found)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    found = m_bundle.next(below);
}

void ListenerRegistry::next(ListenerTokenId below, std::shared_ptr<Listener<FrameworkEvent>>& found)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    found = m_framework.next(below);
}

std::shared_ptr<FilteredListener>
ListenerRegistry::nextServiceListener(long shownId, std::vector<std::string> const& classes, ListenerTokenId below)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_service.next(shownId, classes, below);
}

template <class L>
std::shared_ptr<L> Audience<L>::next(ListenerTokenId below) const
{
    std::shared_ptr<L> found;
    m_registry->next(below, found);
    return found;
}

template class Audience<Listener<BundleEvent>>;
template class Audience<Listener<FrameworkEvent>>;

ServiceAudience::List::Entry ServiceAudience::next(ListenerTokenId below) const
{
    return m_registry->nextServiceListener(m_shownId, *m_classes, below);
}

} // namespace cppmicroservices::detail::core
