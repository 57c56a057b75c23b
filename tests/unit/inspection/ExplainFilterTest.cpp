#include "inspection/FilterExplanation.h"
#include "unit/inspection/Declarations.h"

#include <gmock/gmock.h>

using namespace ostrel::inspection;
using namespace ostrel::test;
using cppmicroservices::Any;
using ostrel::us_container::FilterMap;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilterMap none;
const FilterMap english{{"language", {"en", false}}};
const FilterMap englishRequired{{"language", {"en", true}}};

std::vector<std::string> verdictsOf(const FilterExplanation& explanation)
{
    std::vector<std::string> verdicts;
    for (const Alternative& alternative : explanation.alternatives) {
        verdicts.emplace_back(toText(alternative.verdict));
    }
    return verdicts;
}

TEST(ExplainFilter, GivenNoDeclaration_WhenNothingIsRequired_ThenItIsAdmitted)
{
    const FilterExplanation explanation = explainFilter(Any{}, english);

    EXPECT_TRUE(explanation.admitted);
    EXPECT_EQ(toText(explanation.reason), "no-declaration");
    EXPECT_THAT(explanation.alternatives, IsEmpty());
    EXPECT_FALSE(explanation.change);
}

TEST(ExplainFilter, GivenNoDeclaration_WhenSomethingIsRequired_ThenClearingTheFlagsAdmits)
{
    const FilterExplanation explanation =
        explainFilter(Any{}, {{"language", {"en", true}}, {"mode", {"day", true}}, {"x", {"1", false}}});

    EXPECT_FALSE(explanation.admitted);
    EXPECT_EQ(toText(explanation.reason), "no-declaration-but-required");
    EXPECT_EQ(explanation.change, (Conditions{{"language", "en", false}, {"mode", "day", false}, {"x", "1", false}}));
}

TEST(ExplainFilter, GivenWhatIsNoList_WhenExplained_ThenItCountsAsNone)
{
    const Any single{map({{"language", std::string{"de"}}})};

    EXPECT_EQ(toText(explainFilter(single, english).reason), "not-a-list");
    EXPECT_TRUE(explainFilter(single, english).admitted);
    EXPECT_EQ(toText(explainFilter(single, englishRequired).reason), "not-a-list-but-required");
    EXPECT_FALSE(explainFilter(single, englishRequired).admitted);
    EXPECT_EQ(explainFilter(single, englishRequired).change, (Conditions{{"language", "en", false}}));
}

TEST(ExplainFilter, GivenListsThatAdmitNothing_WhenExplained_ThenNoChangeAdmits)
{
    const FilterExplanation empty = explainFilter(list({}), none);
    EXPECT_FALSE(empty.admitted);
    EXPECT_EQ(toText(empty.reason), "empty-list");
    EXPECT_FALSE(empty.change);

    const FilterExplanation noMap = explainFilter(list({Any{1}, Any{std::string{"language"}}}), english);
    EXPECT_FALSE(noMap.admitted);
    EXPECT_EQ(toText(noMap.reason), "no-map");
    EXPECT_THAT(verdictsOf(noMap), ElementsAre("not-a-map", "not-a-map"));
    EXPECT_FALSE(noMap.change);
}

TEST(ExplainFilter, GivenAlternatives_WhenOneMatches_ThenTheRestIsNotReached)
{
    const Any filters = list({map({{"language", std::string{"de"}}}), Any{7}, map({{"language", std::string{"en"}}}),
                              map({{"language", std::string{"en"}}})});

    const FilterExplanation explanation = explainFilter(filters, english);

    EXPECT_TRUE(explanation.admitted);
    EXPECT_EQ(toText(explanation.reason), "alternative-matches");
    EXPECT_THAT(verdictsOf(explanation), ElementsAre("value-differs", "not-a-map", "matches", "not-reached"));
}

TEST(ExplainFilter, GivenOtherText_WhenExplained_ThenTheDifferenceAndTheChangeAreTold)
{
    const FilterExplanation explanation = explainFilter(list({map({{"language", std::string{"de"}}, {"mode", 1}})}),
                                                        {{"language", {"en", false}}, {"x", {"y", false}}});

    EXPECT_FALSE(explanation.admitted);
    EXPECT_EQ(toText(explanation.reason), "value-differs");
    ASSERT_EQ(explanation.alternatives.size(), 1U);
    const Alternative& alternative = explanation.alternatives[0];
    ASSERT_EQ(alternative.differs.size(), 1U);
    EXPECT_EQ(alternative.differs[0].attribute, "language");
    EXPECT_EQ(alternative.differs[0].declared, "de");
    EXPECT_EQ(alternative.differs[0].condition, "en");
    EXPECT_THAT(alternative.missing, IsEmpty());
    EXPECT_EQ(explanation.change, (Conditions{{"language", "de", false}, {"x", "y", false}}));
}

TEST(ExplainFilter, GivenRequiredNamesThatNoneNames_WhenExplained_ThenAllAreMissing)
{
    const FilterExplanation explanation = explainFilter(list({map({{"mode", std::string{"day"}}})}),
                                                        {{"b", {"1", true}}, {"a", {"2", true}}, {"c", {"3", false}}});

    EXPECT_FALSE(explanation.admitted);
    EXPECT_EQ(toText(explanation.reason), "required-not-named");
    EXPECT_THAT(verdictsOf(explanation), ElementsAre("required-not-named"));
    EXPECT_THAT(explanation.alternatives[0].missing, ElementsAre("a", "b"));
    // One edit: what it names becomes required; two would be needed to free the others.
    EXPECT_EQ(explanation.change,
              (Conditions{{"a", "2", true}, {"b", "1", true}, {"c", "3", false}, {"mode", "day", true}}));
}

TEST(ExplainFilter, GivenOneThatDiffersAndOneThatNamesNothing_WhenExplained_ThenTheDifferenceIsTheReason)
{
    const Any filters = list({map({}), map({{"language", std::string{"de"}}}), map({})});

    const FilterExplanation explanation = explainFilter(filters, englishRequired);

    EXPECT_EQ(toText(explanation.reason), "value-differs");
    EXPECT_THAT(verdictsOf(explanation), ElementsAre("required-not-named", "value-differs", "required-not-named"));
}

TEST(ExplainFilter, GivenTextThatCannotBeRendered_WhenItIsReached_ThenItAdmits)
{
    const Any filters = list({map({{"language", std::string{"de"}}}), map({{"mode", Unreadable{}}}), map({{"x", 1}})});

    const FilterExplanation explanation = explainFilter(filters, englishRequired);

    EXPECT_TRUE(explanation.admitted);
    EXPECT_EQ(toText(explanation.reason), "unreadable");
    EXPECT_THAT(verdictsOf(explanation), ElementsAre("value-differs", "unreadable", "not-reached"));
}

TEST(ExplainFilter, GivenRefusedDeclarationWithoutJson_WhenExplained_ThenTheHintSaysWhenItIsAdmitted)
{
    const Any filters = list({map({{"a", std::string{"de"}}}), Any{Unreadable{}}});
    const FilterMap other{{"a", {"en", false}}};

    const FilterExplanation explanation = explainFilter(filters, other);

    EXPECT_FALSE(explanation.admitted);
    EXPECT_THAT(explanation.hints, ElementsAre("the declaration cannot be written as JSON, so it is admitted while "
                                               "records of its evaluation are on"));
    EXPECT_THAT(explainFilter(list({map({{"a", std::string{"de"}}})}), other).hints, IsEmpty());
}

TEST(ExplainFilter, GivenNameThatNoOptionCanCarry_WhenItStandsInTheWay_ThenNoChangeAdmits)
{
    for (const std::string& name : {std::string{}, std::string{"a=b"}, std::string{"a\0b", 3}}) {
        const Any filters = list({map({{name, std::string{"1"}}})});

        EXPECT_FALSE(explainFilter(filters, {{name, {"2", false}}}).change);
        EXPECT_TRUE(explainFilter(filters, {{name, {"1", true}}}).admitted);
    }
}

TEST(ExplainFilter, GivenEachReason_WhenNamed_ThenTheNamesDiffer)
{
    EXPECT_EQ(toText(Reason::alternativeMatches), "alternative-matches");
    EXPECT_EQ(toText(Reason::unreadable), "unreadable");
    EXPECT_EQ(toText(Verdict::notReached), "not-reached");
    EXPECT_EQ(toText(Verdict::unreadable), "unreadable");
}

} // namespace
