// Masks, and declarations that cannot be evaluated.
#include "container/DiagnosticLog.h"
#include "integration/filtering/FilteringFixture.h"

#include <boost/log/core/core.hpp>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

void mask(std::uint32_t severities)
{
    ostrel::us_container::diagnosticLog().setEnabledSeverities(~severities);
}

TEST_F(CheckFilter, GivenDecisionsMasked_WhenAListIsChecked_ThenNoJsonIsRendered)
{
    int rendered = 0;
    mask(0x8);

    EXPECT_FALSE(check(listOf(Counted{&rendered}), {}));

    EXPECT_EQ(rendered, 0);
    EXPECT_THAT(log.records(), ElementsAre(skipping));
}

TEST_F(CheckFilter, GivenDecisionsEnabled_WhenAListIsChecked_ThenItsJsonIsRenderedOnce)
{
    int rendered = 0;

    EXPECT_FALSE(check(listOf(Counted{&rendered}), {}));

    EXPECT_EQ(rendered, 1);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "subject: filters: [counted]"}, skipping, matchesNot));
}

TEST_F(CheckFilter, GivenMalformedMasked_WhenAnotherTypeIsChecked_ThenNoJsonIsRendered)
{
    int rendered = 0;
    mask(0x100);

    EXPECT_TRUE(check(Any{Counted{&rendered}}, {}));

    EXPECT_EQ(rendered, 0);
    EXPECT_THAT(log.records(), ElementsAre(emptyMatches));
}

TEST_F(CheckFilter, GivenMalformedEnabled_WhenAnotherTypeIsChecked_ThenItsJsonIsRenderedOnce)
{
    int rendered = 0;

    EXPECT_TRUE(check(Any{Counted{&rendered}}, {}));

    EXPECT_EQ(rendered, 1);
    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x100, "subject: unexpected type for filters: counted"}, emptyMatches));
}

TEST_F(CheckFilter, GivenMalformedMasked_WhenAListIsChecked_ThenOnlyTheDecisionsAreWritten)
{
    const Any declaration = listOf(5, alternative({{"a", text("1")}}));
    mask(0x100);

    EXPECT_TRUE(check(declaration, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), matches));
}

TEST_F(CheckFilter, GivenDecisionsMasked_WhenAnAlternativeMatches_ThenNothingIsWrittenButTheResultStands)
{
    mask(0x8);

    EXPECT_TRUE(check(listOf(alternative({{"a", text("1")}})), FilterMap{{"a", required("1")}}));
    EXPECT_FALSE(check(listOf(alternative({{"a", text("2")}})), FilterMap{{"a", required("1")}}));
    EXPECT_FALSE(check(Any{}, FilterMap{{"a", required("1")}}));
    EXPECT_TRUE(check(Any{}, {}));

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CheckFilter, GivenCoreDisabled_WhenChecked_ThenNoJsonIsRendered)
{
    int rendered = 0;
    boost::log::core::get()->set_logging_enabled(false);

    EXPECT_FALSE(check(listOf(Counted{&rendered}), {}));

    EXPECT_EQ(rendered, 0);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CheckFilter, GivenCoreFilterThatRejects_WhenChecked_ThenNoJsonIsRendered)
{
    int rendered = 0;
    boost::log::core::get()->set_filter([](const boost::log::attribute_value_set&) { return false; });

    EXPECT_FALSE(check(listOf(Counted{&rendered}), {}));

    EXPECT_EQ(rendered, 0);
}

TEST_F(CheckFilter, GivenEmptyValueInAnAlternative_WhenChecked_ThenItAdmitsWithAnError)
{
    const Any declaration = listOf(alternative({{"a", Any{}}}));

    EXPECT_TRUE(check(declaration, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, R"(subject: filters: [{"a" : null}])"}, error));
}

TEST_F(CheckFilter, GivenEmptyValueOfAnUnaskedAttribute_WhenChecked_ThenItAdmitsWithAnError)
{
    const Any declaration = listOf(alternative({{"unasked", Any{}}}));

    EXPECT_TRUE(check(declaration, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), error));
}

TEST_F(CheckFilter, GivenEmptyValueInsideAListValue_WhenChecked_ThenItAdmitsWithAnError)
{
    const Any declaration = listOf(alternative({{"a", listOf(Any{})}}));

    EXPECT_TRUE(check(declaration, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), error));
}

TEST_F(CheckFilter, GivenEmptyValueBehindAnUnequalOne_WhenChecked_ThenTheWalkEndedBefore)
{
    const Any declaration = listOf(alternative({{"a", text("9")}, {"z", Any{}}}));

    EXPECT_FALSE(check(declaration, FilterMap{{"a", optional("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), matchesNot));
}

TEST_F(CheckFilter, GivenEmptyValueBehindAMatchingAlternative_WhenChecked_ThenItIsNotLookedAt)
{
    const Any declaration = listOf(alternative({{"a", text("1")}}), alternative({{"a", Any{}}}));

    EXPECT_TRUE(check(declaration, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), matches));
}

TEST_F(CheckFilter, GivenSkippedElementBeforeTheError_WhenChecked_ThenItsRecordStandsBeforeTheErrors)
{
    const Any declaration = listOf(5, alternative({{"a", Any{}}}), alternative({{"a", text("1")}}));

    EXPECT_TRUE(check(declaration, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, error));
}

TEST_F(CheckFilter, GivenUnrenderableValue_WhenItsJsonIsRendered_ThenThatRecordIsDroppedAndItAdmits)
{
    EXPECT_TRUE(check(listOf(alternative({{"a", Unrenderable{}}})), FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(error));
}

TEST_F(CheckFilter, GivenUnrenderableValue_WhenDecisionsAreMasked_ThenTheValueTestFailsInstead)
{
    mask(0x8);

    EXPECT_TRUE(check(listOf(alternative({{"a", Unrenderable{}}})), FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(error));
}

TEST_F(CheckFilter, GivenUnrenderableElement_WhenDecisionsAreMasked_ThenItIsSkippedLikeAnyOther)
{
    mask(0x8);

    EXPECT_FALSE(check(listOf(Unrenderable{}), {}));

    EXPECT_THAT(log.records(), ElementsAre(skipping));
}

TEST_F(CheckFilter, GivenRenderingThatThrowsAnInt_WhenChecked_ThenItAdmitsWithAnError)
{
    EXPECT_TRUE(check(listOf(alternative({{"a", UnrenderableByInt{}}})), FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(error));
}

TEST_F(CheckFilter, GivenUnrenderableValueOfAnotherType_WhenAnAttributeIsRequired_ThenItAdmitsWithAnError)
{
    EXPECT_TRUE(check(Any{Unrenderable{}}, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(error));
}

TEST_F(CheckFilter, GivenUnrenderableValueOfAnotherType_WhenMalformedIsMasked_ThenTheEmptyOutcomeStands)
{
    mask(0x100);

    EXPECT_FALSE(check(Any{Unrenderable{}}, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(emptyLacks));
}

TEST_F(CheckFilter, GivenEverythingMasked_WhenTheDeclarationCannotBeEvaluated_ThenItAdmits)
{
    mask(~std::uint32_t{0});

    EXPECT_TRUE(check(listOf(alternative({{"a", Any{}}})), FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CheckFilter, GivenSinkThatThrowsAtTheDecision_WhenChecked_ThenItAdmitsWithAnError)
{
    log.onRecord([this](const LogRecord& record) {
        if (record == emptyLacks) {
            throw std::runtime_error{"planned fault: sink"};
        }
    });

    EXPECT_TRUE(check(Any{}, FilterMap{{"a", required("1")}}));

    EXPECT_THAT(log.records(), ElementsAre(emptyLacks, error));
}

TEST_F(CheckFilter, GivenSinkThatThrowsAtTheErrorToo_WhenChecked_ThenThatExceptionComesThrough)
{
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(check(Any{}, {}), std::runtime_error);

    EXPECT_THAT(log.records(), ElementsAre(emptyMatches, error));
}

} // namespace
} // namespace ostrel::test
