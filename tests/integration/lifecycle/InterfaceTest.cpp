#include "container/DiagnosticLog.h"
#include "container/MicroServicesContainer.h"

#include <gtest/gtest.h>

#include <type_traits>

// What the public header promises by its types alone. It is checked when this file is compiled.
namespace ostrel::us_container {
namespace {

using cppmicroservices::BundleContext;
using platform::Utf16Path;
using Container = MicroServicesContainer;
using Names = std::vector<std::string>;

static_assert(std::is_constructible_v<Container, BundleContext, const Utf16Path&>);
static_assert(std::is_constructible_v<Container, BundleContext, const Utf16Path&, const Names&, const Names&>);
static_assert(!std::is_default_constructible_v<Container>);
static_assert(!std::is_copy_constructible_v<Container>);
static_assert(!std::is_copy_assignable_v<Container>);
static_assert(!std::is_move_constructible_v<Container>);
static_assert(!std::is_move_assignable_v<Container>);
static_assert(std::is_nothrow_destructible_v<Container>);
static_assert(!std::is_final_v<Container>);
static_assert(!std::is_polymorphic_v<Container>);

static_assert(std::is_same_v<FilterMap, std::unordered_map<std::string, std::pair<std::string, bool>>>);
static_assert(
    std::is_same_v<LoadedService,
                   std::pair<cppmicroservices::ServiceReference<void>, cppmicroservices::InterfaceMapConstPtr>>);

static_assert(std::is_same_v<decltype(&Container::startBundle), void (Container::*)(const std::string&)>);
[[maybe_unused]] constexpr void (Container::*startNamed)(const Names&) = &Container::startBundles;
[[maybe_unused]] constexpr void (Container::*startFiltered)(const FilterMap&) = &Container::startBundles;
static_assert(std::is_same_v<decltype(&Container::startAllBundles), void (Container::*)()>);
static_assert(std::is_same_v<decltype(&Container::stopBundle), void (Container::*)(const std::string&)>);
static_assert(std::is_same_v<decltype(&Container::stopBundles), void (Container::*)(const Names&)>);
static_assert(std::is_same_v<decltype(&Container::stopAllBundles), void (Container::*)()>);
static_assert(std::is_same_v<decltype(&Container::unload), void (Container::*)()>);
static_assert(std::is_same_v<decltype(&Container::reload), void (Container::*)()>);
static_assert(std::is_same_v<decltype(&Container::listManuallyLoadedBundles), Names (Container::*)() const>);
static_assert(std::is_same_v<decltype(&Container::listManuallyLoadedServices), Names (Container::*)() const>);
static_assert(std::is_same_v<decltype(diagnosticLog()), platform::DiagnosticLogger&>);

/// What the fields are, in their order; the container has their size.
struct Fields {
    std::recursive_mutex mutex;
    BundleContext context;
    Utf16Path bundlesPath;
    std::unordered_map<std::string, std::string> startedBundles;
    std::set<std::string> loadedServiceNames;
    std::vector<std::string> spareNames;
    std::unordered_multimap<std::string, LoadedService> loadedServices;
};
static_assert(sizeof(Container) == sizeof(Fields));

TEST(Interface, GivenDerivedClass_WhenMade_ThenItIsAContainer)
{
    class Derived : public Container {
    public:
        Derived() : Container(BundleContext{}, Utf16Path{u"/nowhere"}) {}
    };

    const Derived derived;

    EXPECT_TRUE(static_cast<const Container&>(derived).listManuallyLoadedBundles().empty());
}

} // namespace
} // namespace ostrel::us_container
