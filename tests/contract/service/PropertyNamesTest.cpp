#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/TestServices.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using ostrel::test::thrownText;
using ::testing::ElementsAre;

/// How a filter, and a reference, find the property that is meant.
class NamingProperties : public ostrel::test::StartedFramework {
protected:
    ServiceReference<Plain> add(ServiceProperties const& properties)
    {
        return context.RegisterService<Plain>(std::make_shared<Both>(), properties).GetReference();
    }

    bool finds(std::string const& filter) { return !context.GetServiceReferences<Plain>(filter).empty(); }
};

TEST_F(NamingProperties, disregardsTheCase)
{
    auto const reference = add({{"Room.Name", std::string("hall")}});
    EXPECT_TRUE(finds("(Room.Name=hall)"));
    EXPECT_TRUE(finds("(room.name=hall)"));
    EXPECT_TRUE(finds("(ROOM.NAME=hall)"));
    EXPECT_EQ("hall", reference.GetProperty("rOOM.nAME").ToString());
}

TEST_F(NamingProperties, keepsSimilarNamesApart)
{
    // Of the same length, and with the same letters at the ends and in the middle.
    auto const reference =
        add({{"a1x1z", std::string("first")}, {"a2x2z", std::string("second")}, {"A1X2Z", std::string("third")}});
    EXPECT_TRUE(finds("(&(a1x1z=first)(a2x2z=second)(a1x2z=third))"));
    EXPECT_TRUE(finds("(&(A1X1Z=first)(A2X2Z=second)(A1X2Z=third))"));
    EXPECT_FALSE(finds("(a2x1z=*)"));
    EXPECT_TRUE(reference.GetProperty("a2x1z").Empty());
    EXPECT_EQ("third", reference.GetProperty("a1x2Z").ToString());
}

TEST_F(NamingProperties, countsAllLettersOfTheAlphabetAlone)
{
    auto const reference = add({{"[n]", 1}, {"\xc3\xa4", 2}});
    EXPECT_TRUE(finds("([N]=1)"));
    EXPECT_FALSE(finds("({n}=*)")); // brackets and braces differ as the cases of a letter do
    EXPECT_TRUE(finds("(\xc3\xa4=2)"));
    EXPECT_FALSE(finds("(\xc3\x84=*)"));
    EXPECT_TRUE(reference.GetProperty("{n}").Empty());
}

TEST_F(NamingProperties, findsEachOfAnyNumber)
{
    for (int const count : {1, 28, 29, 30, 31, 32, 33, 34, 300}) {
        ServiceProperties properties;
        for (int i = 0; i < count; ++i) {
            properties["Name" + std::to_string(i)] = 1000 * count + i;
        }
        auto const reference = add(properties);
        for (int const which : {0, count / 2, count - 1}) {
            auto const number = std::to_string(1000 * count + which);
            auto const name = "nAME" + std::to_string(which);
            auto const found = context.GetServiceReferences<Plain>("(" + name + "=" + number + ")");
            EXPECT_THAT(found, ElementsAre(reference)) << count << " properties, " << name;
            EXPECT_EQ(number, reference.GetProperty(name).ToString());
        }
        auto const missing = "name" + std::to_string(count);
        EXPECT_TRUE(reference.GetProperty(missing).Empty()) << count << " properties";
    }
}

TEST_F(NamingProperties, findsNamesOfAnyLength)
{
    std::string const name(300, 'n'); // as long as 44 and a multiple of 256
    auto const reference = add({{name, 1}, {std::string(44, 'n'), 2}});
    EXPECT_EQ(1, any_cast<int>(reference.GetProperty(name)));
    EXPECT_EQ(2, any_cast<int>(reference.GetProperty(std::string(44, 'N'))));
    EXPECT_TRUE(finds("(&(" + name + "=1)(" + std::string(44, 'N') + "=2))"));
}

std::vector<std::string> namesIn(ServiceProperties const& properties)
{
    std::vector<std::string> names;
    for (auto const& property : properties) {
        names.push_back(property.first);
    }
    return names;
}

TEST_F(NamingProperties, tellsThemInTheOrderOfTheMapThatWasGiven)
{
    for (int const count : {0, 1, 2, 9, 10, 30, 100}) {
        ServiceProperties properties;
        for (int i = 0; i < count; ++i) {
            properties["name" + std::to_string(i * i)] = i;
        }
        auto registration = context.RegisterService<Plain>(std::make_shared<Both>(), properties);
        auto const reference = registration.GetReference();
        auto registered = properties;
        for (auto const* const own : {"objectclass", "service.id", "service.scope"}) {
            registered[own] = 0;
        }
        EXPECT_EQ(namesIn(registered), reference.GetPropertyKeys());
        registration.SetProperties(properties);
        auto changed = properties;
        for (auto const* const own : {"service.id", "service.scope", "objectclass"}) {
            changed[own] = 0;
        }
        EXPECT_EQ(namesIn(changed), reference.GetPropertyKeys());
    }
}

TEST_F(NamingProperties, namesTheFirstOfThoseThatDifferByCaseAlone)
{
    for (int const more : {0, 50}) {
        ServiceProperties properties{{"one", 1}, {"two", 2}, {"TWO", 3}, {"ONE", 4}};
        for (int i = 0; i < more; ++i) {
            properties["name" + std::to_string(i)] = i;
        }
        auto registered = properties;
        for (auto const* const own : {"objectclass", "service.id", "service.scope"}) {
            registered[own] = 0;
        }
        std::string first;
        for (auto const& name : namesIn(registered)) {
            if (name.size() == 3) {
                first = name;
                break;
            }
        }
        EXPECT_EQ("Properties contain case variants of the key: " + first,
                  thrownText<std::runtime_error>([&] { add(properties); }));
    }
}

TEST_F(NamingProperties, findsTheNewOnesAfterAChange)
{
    auto registration = context.RegisterService<Plain>(std::make_shared<Both>(), {{"colour", std::string("red")}});
    auto const reference = registration.GetReference();
    EXPECT_TRUE(finds("(colour=red)"));
    registration.SetProperties({{"COLOUR", std::string("blue")}, {"weight", 3}});
    EXPECT_FALSE(finds("(colour=red)"));
    EXPECT_TRUE(finds("(&(colour=blue)(Weight>=2))"));
    EXPECT_EQ("blue", reference.GetProperty("colour").ToString());
}

} // namespace
