#pragma once

#include "bundle/BundleContextPrivate.h"
#include "bundle/BundleRecord.h"
#include "framework/FrameworkCore.h"

#include <memory>
#include <stdexcept>

namespace cppmicroservices::detail::core {

/// What a valid context stands for, kept alive for the duration of a call.
struct ContextAccess {
    std::shared_ptr<BundleContextPrivate> context;
    std::shared_ptr<BundleRecord> bundle;
    std::shared_ptr<FrameworkCore> core;

    ServiceRegistry& services() const { return *context->services(); }
};

/// @throws std::runtime_error for an invalid context
inline ContextAccess access(std::shared_ptr<BundleContextPrivate> const& context)
{
    if (context && context->isValid()) {
        ContextAccess result{context, context->bundle(), context->core()};
        if (result.bundle && result.core) {
            return result;
        }
    }
    throw std::runtime_error("The bundle context is no longer valid");
}

} // namespace cppmicroservices::detail::core
