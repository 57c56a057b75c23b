#pragma once

#include <memory>

namespace cppmicroservices::detail::core {

class BundleRecord;
class FrameworkCore;

// The changes of a bundle's state, for all bundles but the framework's own. Each takes the bundle's lifecycle lock, so
// it waits for another thread that is changing the state, and throws where that could never end. See Bundle for the
// rest. When an activator ends the thread, the bundle is left as when it throws.

void startBundle(FrameworkCore& core, std::shared_ptr<BundleRecord> const& bundle);
void stopBundle(FrameworkCore& core, std::shared_ptr<BundleRecord> const& bundle);
void uninstallBundle(FrameworkCore& core, std::shared_ptr<BundleRecord> const& bundle);

/// The framework is stopping: stops the bundle if it is active, and makes it one that can never be started again. A
/// failing stop is reported as an event.
///
/// Throws nothing, but an activator may end the thread.
void retireBundle(FrameworkCore& core, std::shared_ptr<BundleRecord> const& bundle);

} // namespace cppmicroservices::detail::core
