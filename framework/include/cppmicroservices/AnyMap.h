#pragma once

#include "cppmicroservices/Any.h"

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>

namespace cppmicroservices {

namespace detail::ldap {
class MapAccess;
}

namespace detail {

/// Hash and equality of keys that ignore the case of ASCII letters.
struct US_Framework_EXPORT any_map_cihash {
    std::size_t operator()(std::string const& key) const;
};

struct US_Framework_EXPORT any_map_ciequal {
    bool operator()(std::string const& l, std::string const& r) const;
};

} // namespace detail

/// A map from names to values, of one of three kinds that is chosen at run time.
///
/// It behaves as the standard container that it holds: iterator and reference validity, cost, and thread-safety are
/// that container's. A moved-from map is empty and keeps its kind.
class US_Framework_EXPORT any_map {
public:
    using key_type = std::string;
    using mapped_type = Any;
    using value_type = std::pair<key_type const, mapped_type>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = value_type&;
    using const_reference = value_type const&;
    using pointer = value_type*;
    using const_pointer = value_type const*;
    using ordered_any_map = std::map<std::string, Any>;
    using unordered_any_map = std::unordered_map<std::string, Any>;
    using unordered_any_cimap = std::unordered_map<std::string, Any, detail::any_map_cihash, detail::any_map_ciequal>;

    enum map_type : uint8_t {
        ORDERED_MAP,                        ///< iterates in byte order of the keys
        UNORDERED_MAP,                      ///< iterates in unspecified order
        UNORDERED_MAP_CASEINSENSITIVE_KEYS, ///< the same; keys that differ by case only are one, its first spelling
                                            ///< stays
    };

private:
    class US_Framework_EXPORT iterator_base {
        friend class any_map;

    public:
        using value_type = any_map::value_type;
        using iterator_category = std::forward_iterator_tag;
        using difference_type = any_map::difference_type;
    };

public:
    class iter;

    /// Iterators are small values. Using one that belongs to no map throws std::logic_error "cannot dereference an
    /// invalid iterator", or "cannot increment …".
    class US_Framework_EXPORT const_iter : public iterator_base {
    public:
        using reference = any_map::const_reference;
        using pointer = any_map::const_pointer;
        using iterator = const_iter;

        const_iter();
        const_iter(iterator const& it);
        const_iter(iter const& it);
        const_iter(ordered_any_map::const_iterator&& it);
        const_iter& operator=(iterator const& it);

        reference operator*() const;
        pointer operator->() const;
        iterator& operator++();
        iterator operator++(int);
        bool operator==(iterator const& x) const;
        bool operator!=(iterator const& x) const;

    private:
        friend class any_map;
        // One alternative a kind of map, in the order of map_type; two of them may be one type, so the index tells.
        using position = std::variant<std::monostate, ordered_any_map::const_iterator,
                                      unordered_any_map::const_iterator, unordered_any_cimap::const_iterator>;
        explicit const_iter(position it);

        position m_it;
    };

    class US_Framework_EXPORT iter : public iterator_base {
    public:
        using reference = any_map::reference;
        using pointer = any_map::pointer;
        using iterator = iter;

        iter();
        iter(iter const& it);
        iter(ordered_any_map::iterator&& it);
        iter& operator=(iter const& it);

        reference operator*() const;
        pointer operator->() const;
        iterator& operator++();
        iterator operator++(int);
        bool operator==(iterator const& x) const;
        bool operator!=(iterator const& x) const;

    private:
        friend class any_map;
        friend class const_iter;
        using position = std::variant<std::monostate, ordered_any_map::iterator, unordered_any_map::iterator,
                                      unordered_any_cimap::iterator>;
        explicit iter(position it);

        position m_it;
    };

    using iterator = iter;
    using const_iterator = const_iter;

    /// @throws std::logic_error "invalid map type" when `type` is none of the three.
    any_map(map_type type, std::initializer_list<value_type> l = {});
    any_map(ordered_any_map const& m);
    any_map(ordered_any_map&& m);
    any_map(unordered_any_map const& m);
    any_map(unordered_any_map&& m);
    any_map(unordered_any_cimap const& m);
    any_map(unordered_any_cimap&& m);

    /// Assigning takes over the other map's kind.
    any_map(any_map const& m);
    any_map& operator=(any_map const& m);
    any_map(any_map&& m) noexcept;
    any_map& operator=(any_map&& m) noexcept;
    ~any_map();

    iter begin();
    const_iter begin() const;
    const_iter cbegin() const;
    iter end();
    const_iter end() const;
    const_iter cend() const;

    bool empty() const;
    size_type size() const;
    size_type count(key_type const& key) const;
    void clear();

    /// @throws std::out_of_range "map::at" (ORDERED_MAP) or "unordered_map::at" when there is no such key.
    mapped_type& at(key_type const& key);
    mapped_type const& at(key_type const& key) const;

    /// The value of `key`, which is inserted with an empty Any if need be.
    mapped_type& operator[](key_type const& key);
    mapped_type& operator[](key_type&& key);

    std::pair<iterator, bool> insert(value_type const& value);

    template <class... Args>
    std::pair<iterator, bool> emplace(Args&&... args)
    {
        switch (kind()) {
        case ORDERED_MAP:
            return entered<ORDERED_MAP>(std::get<ORDERED_MAP>(m_map).emplace(std::forward<Args>(args)...));
        case UNORDERED_MAP:
            return entered<UNORDERED_MAP>(std::get<UNORDERED_MAP>(m_map).emplace(std::forward<Args>(args)...));
        default:
            return entered<UNORDERED_MAP_CASEINSENSITIVE_KEYS>(
                std::get<UNORDERED_MAP_CASEINSENSITIVE_KEYS>(m_map).emplace(std::forward<Args>(args)...));
        }
    }

    const_iterator find(key_type const& key) const;

    size_type erase(key_type const& key);

    /// True for maps of one kind with equal entries.
    bool operator==(any_map const& rhs) const;
    bool operator!=(any_map const& rhs) const { return !(operator==(rhs)); }

protected:
    map_type kind() const { return static_cast<map_type>(m_map.index()); }

private:
    friend class detail::ldap::MapAccess;
    // In the order of map_type.
    using storage = std::variant<ordered_any_map, unordered_any_map, unordered_any_cimap>;

    template <map_type Kind, class Entry>
    static std::pair<iterator, bool> entered(Entry entry)
    {
        return {iterator(iterator::position(std::in_place_index<Kind + 1>, entry.first)), entry.second};
    }

    storage m_map;
};

/// A map of properties or of a manifest's entries; by default its keys are case-insensitive.
class US_Framework_EXPORT AnyMap : public any_map {
public:
    /// A map of kind UNORDERED_MAP_CASEINSENSITIVE_KEYS. Of keys given twice the first one counts.
    AnyMap(std::initializer_list<any_map::value_type> l = {});
    AnyMap(map_type type, std::initializer_list<any_map::value_type> l = {});
    AnyMap(ordered_any_map const& m);
    AnyMap(ordered_any_map&& m);
    AnyMap(unordered_any_map const& m);
    AnyMap(unordered_any_map&& m);
    AnyMap(unordered_any_cimap const& m);
    AnyMap(unordered_any_cimap&& m);

    map_type GetType() const;

    /// The value that `key` leads to: each dot descends into a nested AnyMap by key, or into a nested
    /// `std::vector<Any>` by index, as in `sensors.0.name`. A key that itself holds a dot is never found.
    ///
    /// @throws std::out_of_range      when a map lacks the key or a vector the index.
    /// @throws std::invalid_argument  when a value on the way is neither map nor vector, or an index is no number.
    mapped_type const& AtCompoundKey(key_type const& key) const;

    /// The same, as a copy; `defaultValue` where the form above throws, and also where there is no memory for the copy.
    /// A dot that ends the key behind an index has no meaning: `sensors.0.` is `sensors.0`.
    mapped_type AtCompoundKey(key_type const& key, mapped_type defaultValue) const noexcept;
};

template <>
US_Framework_EXPORT std::ostream& any_value_to_string(std::ostream& os, AnyMap const& m);

template <>
US_Framework_EXPORT std::ostream& any_value_to_json(std::ostream& os, AnyMap const& m, uint8_t const increment,
                                                    int32_t const indent);

template <>
US_Framework_EXPORT std::ostream& any_value_to_cpp(std::ostream& os, AnyMap const& m, uint8_t const increment,
                                                   int32_t const indent);

} // namespace cppmicroservices
