// What queries allocate. Allocations of the whole program are counted, so this is a program of its own.

#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/LDAPFilter.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

std::atomic<long> allocations{0};

void* counted(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return counted(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using cppmicroservices::BundleContext;
using cppmicroservices::LDAPFilter;

struct Thing {
    virtual ~Thing() = default;
};

template <typename Work>
long allocationsOf(Work work)
{
    long const before = allocations;
    work();
    return allocations - before;
}

class Allocation : public testing::Test {
protected:
    Allocation() : m_framework(cppmicroservices::FrameworkFactory().NewFramework())
    {
        m_framework.Start();
        context = m_framework.GetBundleContext();
    }

    ~Allocation() override
    {
        m_framework.Stop();
        m_framework.WaitForStop(std::chrono::milliseconds::zero());
    }

    void registerServices(int count)
    {
        for (int i = 0; i < count; ++i) {
            (void)context.RegisterService<Thing>(std::make_shared<Thing>(),
                                                 {{"kind", std::string("a kind of thing that is long to say")},
                                                  {"size", i},
                                                  {"tags", std::vector<std::string>{"red", "round"}},
                                                  {"weight", 2.5},
                                                  {"name", std::string("Thing of a long name")}});
        }
    }

private:
    cppmicroservices::Framework m_framework;

protected:
    BundleContext context;
};

/// Every operator, on every type that the services have.
std::string const selective = "(&(kind=a kind*long*say)(size>=100000))";
std::string const broad =
    "(|(&(kind~=A KIND OF THING THAT IS LONG TO SAY)(tags=blue))(!(weight<=9.0))(size=-1)(none=*))";

TEST_F(Allocation, matchingAServiceAllocatesNothing)
{
    registerServices(1);
    auto const reference = context.GetServiceReference<Thing>();
    for (auto const& text : {selective, broad, std::string("(service.id>=1)"), std::string("(NAME=thing)")}) {
        LDAPFilter const filter(text);
        EXPECT_EQ(allocationsOf([&] { (void)filter.Match(reference); }), 0) << text;
    }
}

TEST_F(Allocation, queryAllocatesTheSameHoweverManyServicesItLooksAt)
{
    registerServices(10);
    auto const repeated = [this](std::string const& filter) {
        (void)context.GetServiceReferences<Thing>(filter); // the filter is read, the services are laid out
        return allocationsOf([&] { EXPECT_TRUE(context.GetServiceReferences<Thing>(filter).empty()); });
    };
    long const selectiveAtTen = repeated(selective);
    long const broadAtTen = repeated(broad);
    registerServices(990);
    EXPECT_EQ(repeated(selective), selectiveAtTen);
    EXPECT_EQ(repeated(broad), broadAtTen);
    EXPECT_LE(selectiveAtTen, 1); // the text of the interface's name
    EXPECT_LE(broadAtTen, 1);
}

TEST_F(Allocation, classQueryAllocatesItsResultOnly)
{
    registerServices(1000);
    // The framework's references, the handles on them, and the typed ones that the caller's template makes of these.
    EXPECT_LE(allocationsOf([this] { EXPECT_EQ(context.GetServiceReferences<Thing>().size(), 1000U); }), 4);
}

TEST_F(Allocation, readingAPropertyAllocatesItsCopyOnly)
{
    registerServices(1);
    auto const reference = context.GetServiceReference<Thing>();
    std::string const key = "SIZE";
    EXPECT_EQ(allocationsOf([&] { (void)reference.GetProperty(key); }), 1);
}

TEST_F(Allocation, queryByTheSameIdAllocatesNoMoreAmongManyServices)
{
    registerServices(1);
    auto const reference = context.GetServiceReference<Thing>();
    auto const filter = "(service.id=" + reference.GetProperty("service.id").ToString() + ")";
    auto const repeated = [&] {
        (void)context.GetServiceReferences("", filter);
        return allocationsOf([&] { EXPECT_EQ(context.GetServiceReferences("", filter).size(), 1U); });
    };
    long const alone = repeated();
    registerServices(999);
    EXPECT_EQ(repeated(), alone);
}

} // namespace
