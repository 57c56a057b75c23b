// Which service events a listener's filter lets through.
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using contract::Seen;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;

class ListenerFilter : public ostrel::test::StartedFramework {
protected:
    /// What a listener sees of the life of a service with a = 1 and B = x, then a = 2, then a = 1.
    std::string seenOfALife(std::string const& filter)
    {
        Seen seen;
        auto token = context.AddServiceListener(std::ref(seen), filter);
        auto registration =
            context.RegisterService<Plain>(std::make_shared<Both>(), {{"a", 1}, {"B", std::string("x")}});
        registration.SetProperties({{"a", 2}});
        registration.SetProperties({{"a", 1}});
        registration.Unregister();
        context.RemoveListener(std::move(token));
        return seen.types();
    }
};

TEST_F(ListenerFilter, followsTheProperties)
{
    std::string const all = "REGISTERED MODIFIED MODIFIED UNREGISTERING";
    EXPECT_EQ(all, seenOfALife(""));
    EXPECT_EQ(all, seenOfALife("(objectclass=contract::Plain)"));
    EXPECT_EQ(all, seenOfALife("(objectClass=contract::Plain)"));
    EXPECT_EQ(all, seenOfALife("(OBJECTCLASS=contract::Plain)"));
    EXPECT_EQ(all, seenOfALife("(objectclass=*)"));
    EXPECT_EQ(all, seenOfALife("(objectclass=contract::P*)"));
    EXPECT_EQ(all, seenOfALife("(objectclass~=CONTRACT::plain)"));
    EXPECT_EQ(all, seenOfALife("(!(objectclass=my.named))"));
    EXPECT_EQ(all, seenOfALife("(|(objectclass=my.named)(objectclass=contract::Plain))"));
    EXPECT_EQ(all, seenOfALife("(service.id>=0)"));
    EXPECT_EQ(all, seenOfALife("(service.scope=singleton)"));
    EXPECT_EQ("", seenOfALife("(objectclass=my.named)"));
    EXPECT_EQ("", seenOfALife("(&(objectclass=my.named)(a=1))"));
    EXPECT_EQ("", seenOfALife("(objectclass=CONTRACT::plain)"));
    EXPECT_EQ("", seenOfALife("(service.id=0)"));
    EXPECT_EQ("", seenOfALife("(a=3)"));
    stopAndWait(framework);
}

TEST_F(ListenerFilter, tellsWhenAServiceCeasesToMatch)
{
    EXPECT_EQ("REGISTERED MODIFIED_ENDMATCH MODIFIED UNREGISTERING", seenOfALife("(a=1)"));
    EXPECT_EQ("REGISTERED MODIFIED_ENDMATCH MODIFIED UNREGISTERING",
              seenOfALife("(&(objectclass=contract::Plain)(a=1))"));
    EXPECT_EQ("MODIFIED MODIFIED_ENDMATCH", seenOfALife("(!(a=1))"));
    EXPECT_EQ("REGISTERED MODIFIED_ENDMATCH", seenOfALife("(|(objectclass=my.named)(b=x))"));
    stopAndWait(framework);
}

TEST_F(ListenerFilter, tellsEndMatchAfterAllModifications)
{
    Seen seen;
    std::vector<ListenerToken> tokens;
    for (int i = 0; i < 8; ++i) {
        tokens.push_back(context.AddServiceListener(std::ref(seen), i % 2 == 0 ? "(a=1)" : "(a>=1)"));
    }
    auto registration = context.RegisterService<Plain>(std::make_shared<Both>(), {{"a", 1}});
    seen.typesAndClear();
    registration.SetProperties({{"a", 2}});
    EXPECT_EQ("MODIFIED MODIFIED MODIFIED MODIFIED "
              "MODIFIED_ENDMATCH MODIFIED_ENDMATCH MODIFIED_ENDMATCH MODIFIED_ENDMATCH",
              seen.types());
    for (auto& token : tokens) {
        context.RemoveListener(std::move(token));
    }
    stopAndWait(framework);
}

TEST_F(ListenerFilter, knowsEachClassOfAService)
{
    Seen plain;
    Seen named;
    Seen both;
    context.AddServiceListener(std::ref(plain), "(objectclass=contract::Plain)");
    context.AddServiceListener(std::ref(named), "(objectclass=my.named)");
    context.AddServiceListener(std::ref(both), "(&(objectclass=my.named)(objectclass=contract::Plain))");

    context.RegisterService<Plain, Named>(std::make_shared<Both>()).Unregister();
    for (auto* seen : {&plain, &named, &both}) {
        EXPECT_EQ("REGISTERED UNREGISTERING", seen->typesAndClear());
    }
    context.RegisterService<Named>(std::make_shared<Both>()).Unregister();
    EXPECT_EQ("", plain.types());
    EXPECT_EQ("REGISTERED UNREGISTERING", named.types());
    EXPECT_EQ("", both.types());
    stopAndWait(framework);
}

TEST_F(ListenerFilter, followsOneService)
{
    auto registration = context.RegisterService<Plain>(std::make_shared<Both>());
    auto const id = registration.GetReference().GetProperty("service.id").ToString();
    Seen seen;
    context.AddServiceListener(std::ref(seen), "(service.id=" + id + ")");
    context.RegisterService<Plain>(std::make_shared<Both>()).Unregister();
    registration.SetProperties({{"a", 1}});
    registration.Unregister();
    EXPECT_EQ("MODIFIED UNREGISTERING", seen.types());
    stopAndWait(framework);
}

TEST_F(ListenerFilter, isReadWhenTheListenerIsAdded)
{
    auto const refusal = [this](std::string const& filter) {
        return thrownText<std::invalid_argument>(
            [this, &filter] { context.AddServiceListener([](ServiceEvent const&) {}, filter); });
    };
    EXPECT_EQ("Unexpected end of query: ", refusal("(a"));
    EXPECT_EQ("Unexpected end of query: ", refusal(" "));
    EXPECT_EQ("Trailing garbage 'x': x", refusal("(a=b)x"));
    stopAndWait(framework);
}

} // namespace
