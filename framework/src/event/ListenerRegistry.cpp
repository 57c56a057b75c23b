#include "event/ListenerRegistry.h"

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"

#include <atomic>
#include <limits>
#include <stdexcept>
#include <typeinfo>

namespace cppmicroservices::detail::core {

namespace {

using Kind = ListenerBase::Kind;

/// Drawn per process, so that a token never stands for a listener of another framework.
ListenerTokenId nextId()
{
    static std::atomic<ListenerTokenId> last{0};
    return ++last;
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
    listener->id = nextId();
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

void ListenerRegistry::addLocked(BundleContextPrivate const& context, Entry const& entry)
{
    if (!context.mayListen()) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
    m_entries.emplace(std::make_pair(entry->owner, entry->id), entry);
}

ListenerRegistry::Entry ListenerRegistry::take(Entries::iterator at)
{
    auto entry = std::move(at->second);
    m_entries.erase(at);
    entry->removed.store(true);
    switch (entry->kind) {
    case Kind::service:
        m_service.remove(static_cast<FilteredListener const&>(*entry));
        break;
    case Kind::bundle:
        m_bundle.remove(entry->id);
        break;
    case Kind::framework:
        m_framework.remove(entry->id);
        break;
    }
    return entry;
}

ListenerTokenId ListenerRegistry::add(BundleContextPrivate const& context, ServiceListener const& listener,
                                      void const* receiver, std::string const& filter)
{
    auto const entry = make<FilteredListener>(Kind::service, context, receiver);
    entry->call = listener;
    if (!filter.empty()) {
        entry->filter = LDAPFilter(filter);
    }
    Entry replaced; // declared before the lock, as it may be destroyed
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (receiver != nullptr) {
        auto const [begin, end] = of(context);
        for (auto at = begin; at != end; ++at) {
            if (at->second->kind == Kind::service && at->second->receiver == receiver) {
                replaced = take(at);
                break;
            }
        }
    }
    addLocked(context, entry);
    m_service.add(entry);
    return entry->id;
}

ListenerTokenId ListenerRegistry::add(BundleContextPrivate const& context, BundleListener const& listener,
                                      void const* receiver)
{
    auto const entry = make<Listener<BundleEvent>>(Kind::bundle, context, receiver);
    entry->call = listener;
    std::lock_guard<std::mutex> const lock(m_mutex);
    addLocked(context, entry);
    m_bundle.add(entry);
    return entry->id;
}

ListenerTokenId ListenerRegistry::add(BundleContextPrivate const& context, FrameworkListener const& listener,
                                      void const* receiver)
{
    auto const entry = make<Listener<FrameworkEvent>>(Kind::framework, context, receiver);
    entry->call = listener;
    std::lock_guard<std::mutex> const lock(m_mutex);
    addLocked(context, entry);
    m_framework.add(entry);
    return entry->id;
}

void ListenerRegistry::remove(BundleContextPrivate const& context, ListenerTokenId id)
{
    Entry removed;
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
    Entry removed;
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
    std::vector<Entry> removed;
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto [at, end] = of(context);
    while (at != end) {
        removed.push_back(take(at++));
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

ListenerRegistry::BundleListeners::Snapshot ListenerRegistry::bundleListeners()
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_bundle.snapshot();
}

ListenerRegistry::FrameworkListeners::Snapshot ListenerRegistry::frameworkListeners()
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_framework.snapshot();
}

ServiceListenerCandidates ListenerRegistry::serviceListeners(long shownId, std::vector<std::string> const& classes)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_service.candidates(shownId, classes);
}

} // namespace cppmicroservices::detail::core
