#include "inspection/Remarks.h"

#include <gmock/gmock.h>

using namespace ostrel::inspection;
using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

PlannedBundle bundle(const std::string& file, Outcome outcome, const std::string& componentName)
{
    PlannedBundle planned;
    planned.file = file;
    planned.outcome = outcome;
    planned.componentName = componentName;
    return planned;
}

TEST(RemarksOnPlan, GivenNoBundle_WhenAsked_ThenThatIsSaid)
{
    Plan plan;
    EXPECT_THAT(remarksOn(plan, "some/dir"), ElementsAre("\"some/dir\" holds no bundle"));

    plan.hasFolders = true;
    EXPECT_THAT(remarksOn(plan, "d"), ElementsAre("\"d\" holds no bundle; the directories in it are not entered"));
}

TEST(RemarksOnPlan, GivenAllRefused_WhenAsked_ThenExplainIsNamed)
{
    Plan plan;
    plan.bundles = {bundle("a", Outcome::skip, "a"), bundle("b", Outcome::skip, "b")};

    EXPECT_THAT(remarksOn(plan, "d"), ElementsAre("the conditions admit none of 2 bundles; 'ostrel-host explain' says "
                                                  "why, and what would"));
    plan.bundles[1].outcome = Outcome::start;
    EXPECT_THAT(remarksOn(plan, "d"), IsEmpty());
    plan.bundles[1].outcome = Outcome::fail;
    EXPECT_THAT(remarksOn(plan, "d"), IsEmpty()) << "that is told as an error";
}

TEST(RemarksOnPlan, GivenFilesPassedOver_WhenAsked_ThenTheFirstAreListed)
{
    Plan plan;
    plan.bundles = {bundle("a", Outcome::start, "a")};
    plan.passedOver = {{"d/x", "why"}};
    EXPECT_THAT(remarksOn(plan, "d"), ElementsAre("1 file passed over: \"d/x\": why"));

    plan.passedOver.assign(12, {"d/x", "why"});
    std::string expected = "12 files passed over: \"d/x\": why";
    for (int i = 1; i < 10; ++i) {
        expected += "; \"d/x\": why";
    }
    EXPECT_THAT(remarksOn(plan, "d"), ElementsAre(expected + "; and 2 more"));
}

TEST(RemarksOnPlan, GivenComponentNameOfTwoThatStart_WhenAsked_ThenBothFilesAreNamed)
{
    Plan plan;
    plan.bundles = {bundle("a", Outcome::start, "same"), bundle("b", Outcome::start, "other"),
                    bundle("c", Outcome::start, "same")};
    EXPECT_THAT(
        remarksOn(plan, "d"),
        ElementsAre("2 bundles have the component name \"same\": \"a\", \"c\"; the container knows the last one "
                    "alone, so it stops only that one"));

    plan.bundles[2].outcome = Outcome::skip;
    EXPECT_THAT(remarksOn(plan, "d"), IsEmpty());
}

TEST(RemarksOnConditions, GivenUndeclaredOnes_WhenAsked_ThenTheNearestIsOffered)
{
    const Vocabulary vocabulary{{"language", {"en"}}, {"mode", {}}};
    const Conditions conditions{{"colour", "x", true}, {"langauge", "en", false}, {"mode", "x", false}};

    EXPECT_THAT(remarksOnConditions(conditions, vocabulary, Asked::bundles),
                ElementsAre("no bundle declares the condition \"colour\"",
                            "no bundle declares the condition \"langauge\": did you mean language?"));
    EXPECT_THAT(remarksOnConditions({{"colour", "x", true}}, vocabulary, Asked::bundlesAndServices),
                ElementsAre("neither a bundle nor a service declares the condition \"colour\""));
}

TEST(RemarksOnExplanation, GivenNothingExplained_WhenAsked_ThenThatIsSaid)
{
    Explanation explanation;
    explanation.hasFolders = true;
    explanation.passedOver = {{"d/x", "why"}};

    EXPECT_THAT(remarksOn(explanation, "d"), ElementsAre("\"d\" holds no bundle; the directories in it are not entered",
                                                         "1 file passed over: \"d/x\": why"));
    explanation.findings.emplace_back();
    explanation.passedOver.clear();
    EXPECT_THAT(remarksOn(explanation, "d"), IsEmpty());
}

TEST(AddDeclared, GivenDeclarations_WhenAdded_ThenMapsOfListsAreLookedInto)
{
    AnyMap map{cppmicroservices::any_map::ORDERED_MAP};
    map["size"] = 2;
    map["on"] = true;
    Vocabulary vocabulary{{"size", {"1"}}};

    addDeclared(vocabulary, Any{});
    addDeclared(vocabulary, map);
    EXPECT_THAT(vocabulary, ElementsAre(Pair("size", ElementsAre("1"))));

    addDeclared(vocabulary, std::vector<Any>{5, map});
    EXPECT_THAT(vocabulary,
                ElementsAre(Pair("on", ElementsAre(Any{true}.ToString())), Pair("size", ElementsAre("1", "2"))));
}

} // namespace
