#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <cstddef>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

using Names = std::vector<std::string>;

class ShortConstructor : public ContainerFixture {};

class LongConstructor : public ContainerFixture {
protected:
    /// Constructs and destroys a container; what is left of it is what the test sees.
    void construct(const Names& bundles, const Names& services)
    {
        MicroServicesContainer{host.context(), host.bundleDirectory(), bundles, services};
    }
};

TEST_F(ShortConstructor, GivenInvalidContext_WhenConstructedAndDestroyed_ThenTheFrameworkIsNotCalled)
{
    // Every call on this context would throw.
    EXPECT_NO_THROW((MicroServicesContainer{cppmicroservices::BundleContext{}, host.bundleDirectory()}));
}

TEST_F(ShortConstructor, GivenContext_WhenConstructedAndDestroyed_ThenNothingIsLogged)
{
    MicroServicesContainer{host.context(), host.bundleDirectory()};

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ShortConstructor, GivenDirectoryWithBundles_WhenConstructed_ThenNothingIsInstalled)
{
    host.add("alpha");
    const std::size_t before = host.context().GetBundles().size();

    const MicroServicesContainer another{host.context(), host.bundleDirectory()};

    EXPECT_THAT(host.context().GetBundles(), SizeIs(before));
}

TEST_F(ShortConstructor, GivenContext_WhenConstructed_ThenNothingIsRecorded)
{
    const MicroServicesContainer another{host.context(), host.bundleDirectory()};

    EXPECT_THAT(another.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(another.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(ShortConstructor, GivenPathThatChangesLater_WhenBundleStarted_ThenThePathAtConstructionCounts)
{
    platform::Utf16Path path = host.bundleDirectory();
    MicroServicesContainer another{host.context(), path};
    path = platform::Utf16Path{u"/nowhere"};

    another.startBundle(host.add("alpha"));

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(LongConstructor, GivenEmptyLists_WhenConstructed_ThenNothingIsRecorded)
{
    host.add("alpha");

    const MicroServicesContainer another{host.context(), host.bundleDirectory(), {}, {}};

    EXPECT_THAT(another.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(another.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LongConstructor, GivenEmptyListsAndInvalidContext_WhenConstructed_ThenTheFrameworkIsNotCalled)
{
    EXPECT_NO_THROW(
        (MicroServicesContainer{cppmicroservices::BundleContext{}, host.bundleDirectory(), Names{}, Names{}}));
}

TEST_F(LongConstructor, GivenBundlesAndServices_WhenConstructed_ThenAllBundlesStartInOrderBeforeTheServicesInOrder)
{
    host.add("alpha");
    host.add("beta");

    const MicroServicesContainer another{host.context(),
                                         host.bundleDirectory(),
                                         {"libbeta.so", "libalpha.so"},
                                         {"(test.word=beta)", "(test.word=alpha)"}};

    EXPECT_THAT(script.events(), ElementsAre("start beta", "start alpha", "get beta", "get alpha"));
}

TEST_F(LongConstructor, GivenBundlesAndServices_WhenConstructed_ThenBothAreRecorded)
{
    host.add("alpha");

    const MicroServicesContainer another{
        host.context(), host.bundleDirectory(), {"libalpha.so"}, {"(test.word=alpha)"}};

    EXPECT_THAT(another.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
    EXPECT_THAT(another.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(LongConstructor, GivenBundleThatCannotBeInstalled_WhenConstructed_ThenTheRestIsStartedAndLoaded)
{
    host.add("alpha");

    construct({"missing.so", "libalpha.so"}, {"(test.word=alpha)"});

    const std::string cause = installErrorOf("missing.so");
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "},
                                           LogRecord{0x200, "Unable to install bundle: , cause: " + cause},
                                           LogRecord{0x10, "Loaded services with name: '(test.word=alpha)'"}));
}

TEST_F(LongConstructor, GivenBundleWhoseStartThrows_WhenConstructed_ThenTheExceptionReachesTheCaller)
{
    host.add("start_throws");

    EXPECT_THAT([&] { construct({"libstart_throws.so"}, {}); },
                ThrowsMessage<std::runtime_error>(HasSubstr("planned fault: start_throws")));
}

TEST_F(LongConstructor, GivenBundleWhoseStartThrows_WhenConstructed_ThenTheOneBeforeStaysActive)
{
    host.add("alpha");
    host.add("start_throws");

    EXPECT_ANY_THROW(construct({"libalpha.so", "libstart_throws.so"}, {}));

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(LongConstructor, GivenBundleWhoseStartThrows_WhenConstructed_ThenNeitherTheRestNorAServiceIsVisited)
{
    host.add("alpha");
    host.add("start_throws");
    host.add("beta");

    EXPECT_ANY_THROW(construct({"libalpha.so", "libstart_throws.so", "libbeta.so"}, {"(test.word=alpha)"}));

    EXPECT_THAT(script.events(), ElementsAre("start alpha"));
    EXPECT_EQ(stateOf("libbeta.so"), uninstalled);
}

TEST_F(LongConstructor, GivenBundleWhoseStartThrows_WhenConstructed_ThenNothingIsLogged)
{
    host.add("start_throws");

    EXPECT_ANY_THROW(construct({"libstart_throws.so"}, {}));

    EXPECT_THAT(log.records(), IsEmpty());
}

class LongConstructorWithMalformedService : public LongConstructor {
protected:
    void SetUp() override
    {
        host.add("alpha");
        host.add("beta");
        EXPECT_THROW(construct({"libalpha.so", "libbeta.so"}, {"(test.word=alpha)", "(malformed", "(test.word=beta)"}),
                     std::invalid_argument);
    }
};

TEST_F(LongConstructorWithMalformedService, GivenServiceBefore_WhenConstructed_ThenItIsReleased)
{
    EXPECT_THAT(script.events(), ElementsAre("start alpha", "start beta", "get alpha", "release alpha"));
}

TEST_F(LongConstructorWithMalformedService, GivenStartedBundles_WhenConstructed_ThenTheyStayActive)
{
    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), active);
}

TEST_F(LongConstructor, GivenFactoryThatThrowsNoException_WhenConstructed_ThenItReachesTheCaller)
{
    host.add("alpha");
    script.on("get alpha", [](auto) { throw 42; });

    EXPECT_THROW(construct({"libalpha.so"}, {"(test.word=alpha)"}), int);

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

} // namespace
} // namespace ostrel::test
