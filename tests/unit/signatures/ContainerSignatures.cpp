// Every public member of the container by its exact type: arguments, result, const and noexcept. It is checked when
// this file is compiled.
#include "container/MicroServicesContainer.h"

#include <type_traits>

namespace ostrel::us_container {
namespace {

using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using cppmicroservices::ServiceReference;
using platform::Utf16Path;
using Container = MicroServicesContainer;
using Names = std::vector<std::string>;
using Stream = std::stringstream;

// The class
// --------------------------------------------------------------------------------------------------------------

static_assert(std::is_class_v<Container>);
static_assert(!std::is_final_v<Container>);
static_assert(!std::is_polymorphic_v<Container>);
static_assert(!std::is_copy_constructible_v<Container>);
static_assert(!std::is_copy_assignable_v<Container>);
static_assert(!std::is_move_constructible_v<Container>);
static_assert(!std::is_move_assignable_v<Container>);
static_assert(std::is_nothrow_destructible_v<Container>);

// The constructors: a short and a long one, and no other.
static_assert(std::is_constructible_v<Container, BundleContext, const Utf16Path&>);
static_assert(!std::is_nothrow_constructible_v<Container, BundleContext, const Utf16Path&>);
static_assert(std::is_constructible_v<Container, BundleContext, const Utf16Path&, const Names&, const Names&>);
static_assert(!std::is_nothrow_constructible_v<Container, BundleContext, const Utf16Path&, const Names&, const Names&>);
static_assert(!std::is_default_constructible_v<Container>);
static_assert(!std::is_constructible_v<Container, BundleContext>);
static_assert(!std::is_constructible_v<Container, BundleContext, const Utf16Path&, const Names&>);
static_assert(!std::is_constructible_v<Container, BundleContext, const Utf16Path&, const FilterMap&, const FilterMap&>);
static_assert(!std::is_constructible_v<Container, BundleContext, const std::string&>);

// The operations. A conversion to a type picks the overload of exactly this type. `noexcept` is part of a function's
// type, but such a function converts to one without it; hence canThrow, where only an unmarked member matches.
template <typename Result, typename... Arguments>
constexpr bool canThrow(Result (Container::*)(Arguments...))
{
    return true;
}
template <typename Result, typename... Arguments>
constexpr bool canThrow(Result (Container::*)(Arguments...) const)
{
    return true;
}
template <typename Result, typename... Arguments>
constexpr bool canThrow(Result (Container::*)(Arguments...) noexcept)
{
    return false;
}
template <typename Result, typename... Arguments>
constexpr bool canThrow(Result (Container::*)(Arguments...) const noexcept)
{
    return false;
}

template <typename Promised, typename Found>
constexpr bool isExactly(Found found)
{
    return std::is_same_v<Promised, Found> && canThrow(found);
}

using Action = void (Container::*)();
using ConstAction = void (Container::*)() const;
using OnName = void (Container::*)(const std::string&);
using ConstOnName = void (Container::*)(const std::string&) const;
using OnNames = void (Container::*)(const Names&);
using OnConditions = void (Container::*)(const FilterMap&);
using List = Names (Container::*)() const;

static_assert(isExactly<OnName>(&Container::startBundle));
static_assert(isExactly<Action>(&Container::startAllBundles));
static_assert(isExactly<OnName>(&Container::stopBundle));
static_assert(isExactly<OnNames>(&Container::stopBundles));
static_assert(isExactly<Action>(&Container::stopAllBundles));
static_assert(isExactly<OnName>(&Container::restartBundle));
static_assert(isExactly<List>(&Container::listManuallyLoadedBundles));
static_assert(isExactly<OnName>(&Container::loadService));
static_assert(isExactly<Action>(&Container::loadAllServices));
static_assert(isExactly<OnName>(&Container::unloadService));
static_assert(isExactly<OnNames>(&Container::unloadServices));
static_assert(isExactly<Action>(&Container::unloadAllServices));
static_assert(isExactly<List>(&Container::listManuallyLoadedServices));
static_assert(isExactly<Action>(&Container::unload));
static_assert(isExactly<Action>(&Container::reload));
static_assert(isExactly<std::string (Container::*)()>(&Container::getMicroServicesString));
static_assert(isExactly<ConstOnName>(&Container::printBundleProperties));
static_assert(isExactly<OnName>(&Container::printServiceProperties));

// Overloaded ones: each of these types, not const where it is not said. The call compiles only if there is such an
// overload; the pointer is not compared, because under a sanitizer g++ takes no such comparison for a constant.
template <typename Promised>
constexpr bool isOverload(Promised)
{
    return true;
}

static_assert(isOverload<OnNames>(&Container::startBundles));
static_assert(isOverload<OnConditions>(&Container::startBundles));
static_assert(isOverload<OnNames>(&Container::loadServices));
static_assert(isOverload<OnConditions>(&Container::loadServices));
static_assert(isOverload<void (Container::*)(Stream&)>(&Container::printAllBundles));
static_assert(isOverload<ConstAction>(&Container::printAllBundles));
static_assert(isOverload<void (Container::*)(Stream&)>(&Container::printAllServices));
static_assert(isOverload<ConstAction>(&Container::printAllServices));
static_assert(isOverload<void (Container::*)(Stream&, Bundle)>(&Container::printBundleServices));
static_assert(isOverload<void (Container::*)(const std::string&, unsigned int) const>(&Container::printBundleServices));
static_assert(isOverload<void (Container::*)(Bundle, unsigned int) const>(&Container::printBundleServices));
static_assert(isOverload<void (Container::*)(Stream&, ServiceReference<void>&)>(&Container::printService));
static_assert(isOverload<void (Container::*)(ServiceReference<void>&) const>(&Container::printService));

// None of the overloaded ones is noexcept, as calls show.
static_assert(!noexcept(std::declval<Container&>().startBundles(std::declval<const Names&>())));
static_assert(!noexcept(std::declval<Container&>().startBundles(std::declval<const FilterMap&>())));
static_assert(!noexcept(std::declval<Container&>().loadServices(std::declval<const Names&>())));
static_assert(!noexcept(std::declval<Container&>().loadServices(std::declval<const FilterMap&>())));
static_assert(!noexcept(std::declval<Container&>().printAllBundles(std::declval<Stream&>())));
static_assert(!noexcept(std::declval<const Container&>().printAllBundles()));
static_assert(!noexcept(std::declval<Container&>().printAllServices(std::declval<Stream&>())));
static_assert(!noexcept(std::declval<const Container&>().printAllServices()));
static_assert(!noexcept(std::declval<Container&>().printService(std::declval<ServiceReference<void>&>())));

// A constant container prints to the console and lists, and does nothing else.
template <typename Object, typename = void>
struct PrintsServiceProperties : std::false_type {
};
template <typename Object>
struct PrintsServiceProperties<Object,
                               std::void_t<decltype(std::declval<Object&>().printServiceProperties(std::string{}))>>
    : std::true_type {
};
static_assert(PrintsServiceProperties<Container>::value);
static_assert(!PrintsServiceProperties<const Container>::value);

} // namespace
} // namespace ostrel::us_container
