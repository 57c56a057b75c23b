#pragma once

#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/ServiceException.h"

#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <unordered_map>
#include <utility>

/// The name by which services of interface T are registered and found: the one declared with
/// CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE, else the C++ name; "" for void.
template <class T>
std::string const& us_service_interface_iid();

namespace cppmicroservices {

class ServiceFactory;

/// The interfaces of a service object by name; each value points to that interface's part of the object.
using InterfaceMap = std::unordered_map<std::string, std::shared_ptr<void>>;
using InterfaceMapPtr = std::shared_ptr<InterfaceMap>;
using InterfaceMapConstPtr = std::shared_ptr<InterfaceMap const>;

namespace detail {

/// The C++ name of a type as a programmer writes it.
US_Framework_EXPORT std::string GetDemangledName(std::type_info const& typeInfo);

/// True when T is one of Types.
template <class T, class... Types>
struct Contains : std::bool_constant<(std::is_same_v<T, Types> || ...)> {
};

} // namespace detail

} // namespace cppmicroservices

template <class T>
std::string const& us_service_interface_iid()
{
    static std::string const name = cppmicroservices::detail::GetDemangledName(typeid(T));
    return name;
}

template <>
inline std::string const& us_service_interface_iid<void>()
{
    static std::string const name;
    return name;
}

/// Gives an interface a name of its own. At global scope, before the first use of the interface with the framework.
#define CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE(_service_interface_type, _service_interface_id)                     \
    template <>                                                                                                        \
    inline std::string const& us_service_interface_iid<_service_interface_type>()                                      \
    {                                                                                                                  \
        static std::string const name(_service_interface_id);                                                          \
        return name;                                                                                                   \
    }

namespace cppmicroservices {

/// Makes the interface map of a service object or of a service factory; converts to either kind of pointer.
template <class... Interfaces>
class MakeInterfaceMap {
public:
    template <class Impl>
    MakeInterfaceMap(std::shared_ptr<Impl> const& impl) : m_interfaces(std::static_pointer_cast<Interfaces>(impl)...)
    {
    }

    /// @throws ServiceException for a null factory
    MakeInterfaceMap(std::shared_ptr<ServiceFactory> factory) : m_factory(std::move(factory))
    {
        if (!m_factory) {
            throw ServiceException("The service factory argument must not be nullptr.");
        }
    }

    operator InterfaceMapPtr() { return makeMap(); }
    operator InterfaceMapConstPtr() { return makeMap(); }

private:
    InterfaceMapPtr makeMap() const
    {
        auto map = std::make_shared<InterfaceMap>();
        insertAll(*map, std::index_sequence_for<Interfaces...>());
        if (m_factory) {
            map->emplace("org.cppmicroservices.factory", m_factory);
        }
        return map;
    }

    // From the last to the first: the order of the object's classes follows from it.
    template <std::size_t... Index>
    void insertAll(InterfaceMap& map, std::index_sequence<Index...>) const
    {
        (insert(map, std::get<sizeof...(Index) - 1 - Index>(m_interfaces)), ...);
    }

    template <class Interface>
    static void insert(InterfaceMap& map, std::shared_ptr<Interface> const& object)
    {
        map.emplace(us_service_interface_iid<Interface>(), object);
    }

    std::shared_ptr<ServiceFactory> m_factory;
    std::tuple<std::shared_ptr<Interfaces>...> m_interfaces;
};

/// The object as that interface, or null when the map does not have it.
inline std::shared_ptr<void> ExtractInterface(InterfaceMapConstPtr const& map, std::string const& interfaceId)
{
    if (!map || map->empty()) {
        return nullptr;
    }
    auto const found = interfaceId.empty() ? map->begin() : map->find(interfaceId);
    return found != map->end() ? found->second : nullptr;
}

/// The object as that interface, or null when the map does not have it.
template <class Interface>
std::shared_ptr<Interface> ExtractInterface(InterfaceMapConstPtr const& map)
{
    if (!map) {
        return nullptr;
    }
    auto const found = map->find(us_service_interface_iid<Interface>());
    return found != map->end() ? std::static_pointer_cast<Interface>(found->second) : nullptr;
}

/// For handing a factory to BundleContext::RegisterService().
template <class T>
std::shared_ptr<ServiceFactory> ToFactory(std::shared_ptr<T> const& factory)
{
    return std::static_pointer_cast<ServiceFactory>(factory);
}

} // namespace cppmicroservices
