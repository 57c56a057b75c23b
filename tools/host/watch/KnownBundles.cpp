#include "watch/KnownBundles.h"

#include <atomic>
#include <cstring>
#include <dlfcn.h>
#include <inspection/Text.h>
#include <link.h>
#include <mutex>
#include <setjmp.h>
#include <unordered_map>
#include <unwind.h>

namespace ostrel::host {

namespace {

/// A list that only grows, so that a signal handler can walk along it at any time.
std::atomic<const KnownBundle*> newest{nullptr};

/// The names of the bundles of that file; empty when none is known.
std::string namesAt(const std::string& location)
{
    for (const KnownBundle* entry = newest; entry != nullptr; entry = entry->next) {
        if (entry->location == location) {
            return entry->name;
        }
    }
    return {};
}

const KnownBundle* add(const char* kind, const std::string& name, const std::string& location)
{
    newest = new KnownBundle{name, location,
                             "ostrel-host: error: " + inspection::escaped(location) + ": " + kind + name + " ", newest};
    return newest;
}

/// Where this thread continues when its walk fails.
thread_local sigjmp_buf* wayBack = nullptr;

/// The file name of the library that holds the address, without any lock: another thread may be inside of the dynamic
/// loader, and stay there.
const char* libraryHolding(const void* address) noexcept
{
#ifdef DLFO_STRUCT_HAS_EH_DBASE
    dl_find_object found{};
    return _dl_find_object(const_cast<void*>(address), &found) == 0 ? found.dlfo_link_map->l_name : nullptr;
#else
    // Older libraries of C have nothing better.
    Dl_info found{};
    return dladdr(address, &found) != 0 ? found.dli_fname : nullptr;
#endif
}

_Unwind_Reason_Code visit(_Unwind_Context* frame, void* result)
{
    auto& found = *static_cast<const KnownBundle**>(result);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the unwinder gives addresses as numbers
    found = bundleHolding(reinterpret_cast<const void*>(_Unwind_GetIP(frame)));
    return found == nullptr ? _URC_NO_REASON : _URC_END_OF_STACK;
}

} // namespace

const KnownBundle& known(const cppmicroservices::Bundle& bundle)
{
    static std::mutex mutex;
    static auto& byId = *new std::unordered_map<long, const KnownBundle*>;
    const std::lock_guard lock{mutex};
    const KnownBundle*& entry = byId[bundle.GetBundleId()];
    if (entry == nullptr) {
        const std::string location = bundle.GetLocation();
        const std::string name = '"' + inspection::escaped(bundle.GetSymbolicName()) + '"';
        const std::string before = namesAt(location);
        entry = add("the bundle ", name, location);
        if (!before.empty()) {
            // Of the code of a library nobody can tell to which of its bundles it belongs.
            add("one of the bundles ", before + ", " + name, location);
        }
    }
    return *entry;
}

const KnownBundle* bundleHolding(const void* address) noexcept
{
    const char* const library = libraryHolding(address);
    for (const KnownBundle* entry = newest; library != nullptr && entry != nullptr; entry = entry->next) {
        if (entry->location == library) {
            return entry;
        }
    }
    return nullptr;
}

const KnownBundle* innermostBundle() noexcept
{
    sigjmp_buf back;
    if (sigsetjmp(back, 1) != 0) {
        wayBack = nullptr;
        return nullptr;
    }
    wayBack = &back;
    const KnownBundle* found = nullptr;
    _Unwind_Backtrace(visit, &found);
    wayBack = nullptr;
    return found;
}

void abandonWalk() noexcept
{
    if (wayBack != nullptr) {
        siglongjmp(*wayBack, 1);
    }
}

} // namespace ostrel::host
