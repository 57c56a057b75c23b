#pragma once

#include <cppmicroservices/Bundle.h>

#include <string>

namespace ostrel::host {

/// What a message about a bundle needs, composed before anything happens; never destroyed.
struct KnownBundle {
    std::string name;     ///< escaped
    std::string location; ///< by which the dynamic loader knows its library
    std::string head;     ///< how a message about it begins: "ostrel-host: error: FILE: the bundle NAME ", escaped
    const KnownBundle* next;
};

/// The bundle's entry, made at the first call for it.
const KnownBundle& known(const cppmicroservices::Bundle& bundle);

/// The known bundle in whose library the address lies; null when there is none. Of a library with several bundles it is
/// an entry that names them all. A signal handler may call it.
const KnownBundle* bundleHolding(const void* address) noexcept;

/// The known bundle whose code is the innermost in the stack of this thread; null when there is none. A signal handler
/// may call it: see abandonWalk().
const KnownBundle* innermostBundle() noexcept;

/// Ends a walk through a stack that is broken: if this thread was at it when a signal came, it returns null, and this
/// does not come back.
void abandonWalk() noexcept;

} // namespace ostrel::host
