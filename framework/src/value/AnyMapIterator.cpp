#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {

namespace {

template <class Pointer, class Position>
Pointer addressed(Position const& position)
{
    switch (position.index()) {
    case 1:
        return &*std::get<1>(position);
    case 2:
        return &*std::get<2>(position);
    case 3:
        return &*std::get<3>(position);
    default:
        throw std::logic_error("cannot dereference an invalid iterator");
    }
}

template <class Position>
void advance(Position& position)
{
    switch (position.index()) {
    case 1:
        ++std::get<1>(position);
        break;
    case 2:
        ++std::get<2>(position);
        break;
    case 3:
        ++std::get<3>(position);
        break;
    default:
        throw std::logic_error("cannot increment an invalid iterator");
    }
}

} // namespace

any_map::const_iter::const_iter() = default;
any_map::const_iter::const_iter(iterator const& it) = default;
any_map::const_iter::const_iter(position it) : m_it(it) {}
any_map::const_iter::const_iter(ordered_any_map::const_iterator&& it) : m_it(std::in_place_index<1>, it) {}
any_map::const_iter& any_map::const_iter::operator=(iterator const& it) = default;

any_map::const_iter::const_iter(iter const& it)
{
    switch (it.m_it.index()) {
    case 1:
        m_it.emplace<1>(std::get<1>(it.m_it));
        break;
    case 2:
        m_it.emplace<2>(std::get<2>(it.m_it));
        break;
    case 3:
        m_it.emplace<3>(std::get<3>(it.m_it));
        break;
    default:
        break;
    }
}

any_map::const_iter::reference any_map::const_iter::operator*() const
{
    return *addressed<pointer>(m_it);
}

any_map::const_iter::pointer any_map::const_iter::operator->() const
{
    return addressed<pointer>(m_it);
}

any_map::const_iter::iterator& any_map::const_iter::operator++()
{
    advance(m_it);
    return *this;
}

any_map::const_iter::iterator any_map::const_iter::operator++(int)
{
    iterator before(*this);
    advance(m_it);
    return before;
}

bool any_map::const_iter::operator==(iterator const& x) const
{
    return m_it == x.m_it;
}

bool any_map::const_iter::operator!=(iterator const& x) const
{
    return m_it != x.m_it;
}

any_map::iter::iter() = default;
any_map::iter::iter(iter const& it) = default;
any_map::iter::iter(position it) : m_it(it) {}
any_map::iter::iter(ordered_any_map::iterator&& it) : m_it(std::in_place_index<1>, it) {}
any_map::iter& any_map::iter::operator=(iter const& it) = default;

any_map::iter::reference any_map::iter::operator*() const
{
    return *addressed<pointer>(m_it);
}

any_map::iter::pointer any_map::iter::operator->() const
{
    return addressed<pointer>(m_it);
}

any_map::iter::iterator& any_map::iter::operator++()
{
    advance(m_it);
    return *this;
}

any_map::iter::iterator any_map::iter::operator++(int)
{
    iterator before(*this);
    advance(m_it);
    return before;
}

bool any_map::iter::operator==(iterator const& x) const
{
    return m_it == x.m_it;
}

bool any_map::iter::operator!=(iterator const& x) const
{
    return m_it != x.m_it;
}

} // namespace cppmicroservices
