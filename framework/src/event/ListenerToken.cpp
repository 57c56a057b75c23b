#include "cppmicroservices/ListenerToken.h"

#include <utility>

namespace cppmicroservices {

ListenerToken::ListenerToken() : m_id(0) {}

ListenerToken::ListenerToken(ListenerTokenId id) : m_id(id) {}

ListenerToken::ListenerToken(ListenerToken&& other) noexcept : m_id(std::exchange(other.m_id, 0)) {}

ListenerToken& ListenerToken::operator=(ListenerToken&& other) noexcept
{
    m_id = std::exchange(other.m_id, 0);
    return *this;
}

ListenerToken::operator bool() const
{
    return m_id != 0;
}

} // namespace cppmicroservices
