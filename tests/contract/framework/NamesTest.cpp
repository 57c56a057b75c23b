// What sources name besides the classes: macros, aliases, and what they get with a header without including it.
#define US_BUNDLE_NAME contract_names
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleInitialization.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

namespace cms = cppmicroservices;

static_assert(std::is_same_v<cms::SetBundleContextFn, std::function<void(cms::BundleContextPrivate*)>>);
static_assert(std::is_same_v<cms::ServiceProperties, std::unordered_map<std::string, cms::Any>>);
static_assert(std::is_same_v<cms::InterfaceMap, std::unordered_map<std::string, std::shared_ptr<void>>>);
static_assert(std::is_same_v<cms::ServiceReference<int>::ServiceType, int>);
static_assert(std::is_same_v<cms::ServiceReferenceU, cms::ServiceReference<void>>);
static_assert(std::is_same_v<cms::ServiceRegistrationU, cms::ServiceRegistration<void>>);
static_assert(cms::detail::Contains<int, char, int>::value && !cms::detail::Contains<int, char>::value);

struct Hashed {
    int value;
};

// With <cppmicroservices/BundleContext.h> alone.
std::mutex mutex;
std::atomic<int> counter{0};

} // namespace

// clang-format off
US_HASH_FUNCTION_BEGIN(Hashed)
return std::hash<int>()(arg.value);
US_HASH_FUNCTION_END
// clang-format on

namespace {

TEST(Names, ofTheVersion)
{
    EXPECT_EQ(3, CppMicroServices_VERSION_MAJOR);
    EXPECT_EQ(8, CppMicroServices_VERSION_MINOR);
    EXPECT_EQ(4, CppMicroServices_VERSION_PATCH);
    EXPECT_STREQ("3.8.4", CppMicroServices_VERSION_STR);
    EXPECT_STREQ("3.8.4", US_VERSION_STR);
    EXPECT_STREQ("3.8.4", US_FRAMEWORK_VERSION_STR);
    EXPECT_STREQ("3.8.4", US_STR(US_VERSION));
}

TEST(Names, ofFiles)
{
    EXPECT_STREQ("lib", US_LIB_PREFIX);
    EXPECT_STREQ(".so", US_LIB_EXT);
    EXPECT_STREQ("", US_EXE_EXT);
}

TEST(Names, ofFunctionsInABundle)
{
    EXPECT_STREQ("_us_create_activator_contract_names", US_STR(US_CREATE_ACTIVATOR_FUNC(US_BUNDLE_NAME)));
    EXPECT_STREQ("_us_destroy_activator_contract_names", US_STR(US_DESTROY_ACTIVATOR_FUNC(US_BUNDLE_NAME)));
    EXPECT_STREQ("_us_get_bundle_context_instance_contract_names", US_STR(US_GET_CTX_FUNC(US_BUNDLE_NAME)));
    EXPECT_STREQ("_us_set_bundle_context_instance_contract_names", US_STR(US_SET_CTX_FUNC(US_BUNDLE_NAME)));
    EXPECT_STREQ("_us_bundle_context_instance_contract_names", US_STR(US_CTX_INS(US_BUNDLE_NAME)));
}

TEST(Names, makeAHash)
{
    EXPECT_EQ(std::hash<int>()(5), std::hash<Hashed>()(Hashed{5}));
}

TEST(Names, comeWithTheContext)
{
    std::lock_guard<std::mutex> const lock(mutex);
    EXPECT_EQ(1, ++counter);
}

} // namespace
