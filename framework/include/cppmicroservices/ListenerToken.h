#pragma once

#include "cppmicroservices/FrameworkExport.h"

#include <cstdint>

namespace cppmicroservices {

namespace detail::core {
class HandleAccess;
} // namespace detail::core

using ListenerTokenId = std::uint64_t;

/// What adding a listener returns, and by which BundleContext::RemoveListener() removes it. Can be moved, not copied;
/// destroying it removes nothing.
class US_Framework_EXPORT ListenerToken {
public:
    /// A token that is false and stands for no listener.
    ListenerToken();
    ListenerToken(ListenerToken const&) = delete;
    ListenerToken& operator=(ListenerToken const&) = delete;
    ListenerToken(ListenerToken&& other) noexcept;
    ListenerToken& operator=(ListenerToken&& other) noexcept;

    /// False when default constructed or moved from. A token remains true when its listener is removed by other means.
    explicit operator bool() const;

private:
    friend class detail::core::HandleAccess;

    explicit ListenerToken(ListenerTokenId id);

    ListenerTokenId m_id;
};

} // namespace cppmicroservices
