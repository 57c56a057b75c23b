#include "inspection/Plan.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace ostrel::inspection;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

PlannedBundle bundle(const std::string& file, Outcome outcome, const std::string& reason)
{
    PlannedBundle planned;
    planned.file = "dir/" + file;
    planned.symbolicName = file + "-bundle";
    planned.version = "1.0.0";
    planned.componentName = file + "-component";
    planned.outcome = outcome;
    planned.reason = reason;
    planned.text = "text of " + file;
    planned.sha256 = "00";
    return planned;
}

Plan nine()
{
    Plan plan;
    plan.conditions = {{"language", "en", false}, {"mode", "x", true}};
    plan.bundles = {
        bundle("a", Outcome::skip, "required-not-named"), bundle("b", Outcome::start, "no-declaration"),
        bundle("c", Outcome::skip, "value-differs"),      bundle("d", Outcome::skip, "value-differs"),
        bundle("e", Outcome::fail, "no-component-name"),  bundle("f", Outcome::skip, "value-differs"),
        bundle("g", Outcome::skip, "required-not-named"), bundle("h", Outcome::start, "alternative-matches"),
        bundle("i", Outcome::skip, "value-differs")};
    return plan;
}

TEST(PlanText, GivenAllOutcomes_WhenSummedUp_ThenReasonsAreCountedTheMostFrequentFirst)
{
    EXPECT_EQ(inOneLine(nine()), "2 of 9 start; 6 refused: 4 value differs, 2 required attribute not named; 1 fails: "
                                 "no component name");
}

TEST(PlanText, GivenOtherNumbers_WhenSummedUp_ThenWhatIsNoneIsLeftOut)
{
    Plan plan;
    EXPECT_EQ(inOneLine(plan), "0 of 0 start");

    plan.bundles = {bundle("a", Outcome::start, "no-declaration")};
    EXPECT_EQ(inOneLine(plan), "1 of 1 starts");

    plan.bundles = {bundle("a", Outcome::fail, "not-a-bundle"), bundle("b", Outcome::fail, "no-manifest"),
                    bundle("c", Outcome::notReached, "no-declaration")};
    EXPECT_EQ(inOneLine(plan), "0 of 3 start; 2 fail: 1 not a bundle, 1 no manifest; 1 not reached");

    plan.bundles[1].reason = "not-a-bundle";
    EXPECT_EQ(inOneLine(plan), "0 of 3 start; 2 fail: not a bundle; 1 not reached");
}

TEST(PlanText, GivenPlan_WhenWritten_ThenEachBundleHasALineAndFailuresTheirRemedy)
{
    Plan plan;
    plan.bundles = {bundle("a", Outcome::start, "no-declaration"), bundle("b", Outcome::fail, "no-component-name")};
    plan.bundles[1].componentName.reset();
    plan.findings = {{Code::noComponentName, "dir/b", "b-bundle", "what", "why", "mend it"}};
    plan.passedOver = {{"dir/c\n", "why"}};

    EXPECT_EQ(toText(plan), "1 of 2 starts; 1 fails: no component name\n"
                            "dir/a: a-component text of a\n"
                            "dir/b: b-bundle text of b\n"
                            "  do: mend it [no-component-name]\n"
                            "dir/c\\n: is passed over: why\n");
}

TEST(PlanJson, GivenPlan_WhenWritten_ThenAllOfItIsThere)
{
    Plan plan;
    plan.conditions = {{"mode", "x", true}};
    plan.bundles = {bundle("a", Outcome::notReached, "no-declaration"), bundle("b", Outcome::fail, "not-a-bundle")};
    plan.bundles[1].symbolicName.reset();
    plan.bundles[1].version.reset();
    plan.bundles[1].componentName.reset();
    plan.bundles[1].sha256.clear();
    plan.findings = {{Code::notABundle, "dir/b", "", "what", "why", "mend it"}};
    plan.passedOver = {{"dir/\xff", "why"}};

    EXPECT_EQ(toJson(plan, "test 1"), R"({
    "schema": "ostrel.plan/1",
    "tool": "test 1",
    "conditions": [
        {
            "name": "mode",
            "value": "x",
            "required": true
        }
    ],
    "keepGoing": false,
    "bundles": [
        {
            "file": "dir/a",
            "symbolicName": "a-bundle",
            "version": "1.0.0",
            "componentName": "a-component",
            "outcome": "not-reached",
            "reason": "no-declaration",
            "text": "text of a",
            "sha256": "00"
        },
        {
            "file": "dir/b",
            "outcome": "fail",
            "reason": "not-a-bundle",
            "text": "text of b"
        }
    ],
    "passedOver": [
        {
            "file": "dir/)"
                                      "\xEF\xBF\xBD"
                                      R"(",
            "fileHex": "6469722fff",
            "why": "why"
        }
    ],
    "findings": [
        {
            "code": "not-a-bundle",
            "file": "dir/b",
            "bundle": null,
            "what": "what",
            "why": "why",
            "do": "mend it"
        }
    ],
    "summary": {
        "start": 0,
        "skip": 0,
        "fail": 1,
        "notReached": 1,
        "reasons": {
            "no-declaration": 1,
            "not-a-bundle": 1
        }
    }
}
)");
}

TEST(ReadPlan, GivenWrittenPlan_WhenRead_ThenItDoesNotDiffer)
{
    Plan plan = nine();
    plan.keepGoing = true;
    plan.bundles[0].file = "dir/\xff";
    plan.bundles[1].componentName = "x\xfe";
    plan.bundles[4].symbolicName.reset();

    const Plan read = readPlan(toJson(plan, "test"));

    EXPECT_EQ(read.conditions, plan.conditions);
    EXPECT_TRUE(read.keepGoing);
    EXPECT_THAT(differences(plan, read), IsEmpty());
    EXPECT_EQ(read.bundles.at(0).file, "dir/\xff");
    EXPECT_EQ(read.bundles.at(1).componentName, "x\xfe");
    EXPECT_EQ(read.bundles.at(0).text, "text of a");
}

std::string faultOf(const std::string& json)
{
    try {
        readPlan(json);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

TEST(ReadPlan, GivenTextThatIsNoPlan_WhenRead_ThenTheFaultIsTold)
{
    EXPECT_EQ(faultOf("{\n  x"), "it is no plan: line 2, column 3: Missing a name for object member.");
    EXPECT_EQ(faultOf("[]"), "it is no plan: line 1, column 1: it is no object");
    EXPECT_EQ(faultOf("{}"), "it is no plan: \"schema\" is missing or of another kind");
    EXPECT_EQ(faultOf(R"({"schema": "ostrel.explanation/1"})"),
              "it is no plan: its schema is \"ostrel.explanation/1\" and not \"ostrel.plan/1\"");
    EXPECT_EQ(faultOf(R"({"schema": "ostrel.plan/1", "conditions": [5]})"),
              "it is no plan: a list holds what is no object");
    EXPECT_EQ(faultOf(R"({"schema": "ostrel.plan/1", "conditions": [], "keepGoing": 1})"),
              "it is no plan: \"keepGoing\" is missing or of another kind");
    EXPECT_EQ(faultOf(R"({"schema": "ostrel.plan/1", "conditions": [], "keepGoing": true,
        "bundles": [{"file": "a", "outcome": "fly"}]})"),
              "it is no plan: there is no outcome \"fly\"");
    EXPECT_EQ(faultOf(R"({"schema": "ostrel.plan/1", "conditions": [], "keepGoing": true,
        "bundles": [{"file": "a", "fileHex": "6x"}]})"),
              "it is no plan: \"6x\" is not in hexadecimal digits");
}

TEST(Differences, GivenSamePlanOfADirectoryWrittenOtherwise_WhenCompared_ThenThereAreNone)
{
    Plan now = nine();
    for (PlannedBundle& one : now.bundles) {
        one.file = "elsewhere/" + one.file;
        one.text = "other words";
    }
    now.passedOver = {{"elsewhere/dir/x", "why"}};

    EXPECT_THAT(differences(nine(), now), IsEmpty());
}

TEST(Differences, GivenChanges_WhenCompared_ThenEachIsToldInWords)
{
    Plan now = nine();
    now.bundles[0].sha256 = "01";
    now.bundles[1].version = "1.1.0";
    now.bundles[1].outcome = Outcome::skip;
    now.bundles[1].reason = "value-differs";
    now.bundles[2].componentName.reset();
    now.bundles[2].symbolicName = "z";
    now.bundles.pop_back();
    now.bundles.push_back(bundle("z", Outcome::start, "no-declaration"));

    EXPECT_THAT(differences(nine(), now),
                ElementsAre("\"dir/a\": its content is another one",
                            "\"dir/b\": its version was \"1.0.0\" and is \"1.1.0\"; it was to be started "
                            "(no-declaration), and is now to be refused (value-differs)",
                            "\"dir/c\": its symbolic name was \"c-bundle\" and is \"z\"; its component name was "
                            "\"c-component\" and is none",
                            "\"dir/i\": a bundle of it is gone: \"i-bundle\"",
                            "\"dir/z\": a bundle of it is new: \"z-bundle\""));
}

TEST(Differences, GivenTwoBundlesInAFile_WhenOneGoes_ThenTheOtherIsStillTheSame)
{
    Plan then;
    then.bundles = {bundle("a", Outcome::start, "no-declaration"), bundle("a", Outcome::start, "no-declaration")};
    Plan now = then;
    now.bundles.pop_back();

    EXPECT_THAT(differences(then, now), ElementsAre("\"dir/a\": a bundle of it is gone: \"a-bundle\""));
}

} // namespace
