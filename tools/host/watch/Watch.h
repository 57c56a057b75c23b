#pragma once

#include <cppmicroservices/BundleContext.h>

#include <chrono>
#include <optional>

namespace ostrel::host {

/// Sees to it that no bundle ends or holds up the program without a word. Each command in which code of bundles runs
/// has one, made before its framework:
///
///     Watch watch{options.timeout};
///     FrameworkHost host = FrameworkHost::installing(...);
///     watch.follow(host.context());
///     watch.step("the services were being loaded");
///
/// A crash, an uncaught exception, exit() and, with a limit, a hang leave a message that names the bundle, its file and
/// what was being done. What bundles print goes to standard error from now on. After its end, code that runs while the
/// process ends is still told of; exit() is not.
///
/// Not seen are _exit(), what ends the process from outside, and a stack that is used up on a thread of a bundle.
class Watch {
public:
    /// @param limit  how long a start, a stop, or another step may take; none: for ever
    explicit Watch(std::optional<std::chrono::duration<double>> limit);
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch();

    /// Listens to the framework, before any of its bundles is started.
    /// @throws std::runtime_error if the context is not valid
    void follow(cppmicroservices::BundleContext context);

    /// What the program does from now on: what follows "while", such as "the services were being loaded".
    /// @param what  must last for ever
    void step(const char* what);
};

} // namespace ostrel::host
