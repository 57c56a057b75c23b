#include "inspection/Explanation.h"
#include "support/Host.h"
#include "unit/inspection/Manifests.h"

#include <gmock/gmock.h>

#include <platform/InstallBundles.h>

using namespace ostrel::inspection;
using namespace ostrel::test;
using ostrel::us_container::FilterMap;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilterMap english{{"language", {"en", false}}};
const FilterMap required{{"language", {"en", true}}};
const FilterMap twoRequired{{"b", {"1", true}}, {"a", {"1", true}}};

/// What is said of a bundle with such a manifest.
class ExplainBundle : public HostFixture {
protected:
    Subject explain(const std::string& manifest, const FilterMap& conditions)
    {
        host.write("a.zip", bundleWith("a", manifest));
        const auto bundles = ostrel::platform::installBundles(host.context(), host.bundleDirectory());
        return explainBundle(bundles.at(0), conditions);
    }

    Subject filtered(const std::string& filters, const FilterMap& conditions)
    {
        return explain(componentManifest("a", "\"ostrelFilters\": " + filters), conditions);
    }
};

TEST_F(ExplainBundle, GivenMatch_WhenExplained_ThenAllIsTold)
{
    const Subject subject = filtered(R"([{"language": "de"}, {"language": "en"}])", english);

    EXPECT_EQ(subject.kind, SubjectKind::bundle);
    EXPECT_EQ(subject.name, "component.a");
    EXPECT_EQ(subject.bundle, "a");
    EXPECT_EQ(subject.file, host.locationOf("a.zip"));
    EXPECT_EQ(subject.admitted, true);
    EXPECT_EQ(subject.reason, Reason::alternativeMatches);
    EXPECT_EQ(subject.text, "starts: alternative 2 of 2 matches");
    EXPECT_EQ(subject.alternatives.size(), 2U);
    EXPECT_THAT(subject.hints, IsEmpty());
    EXPECT_FALSE(subject.change);
}

TEST_F(ExplainBundle, GivenOtherValue_WhenExplained_ThenTheChangeAdmits)
{
    const Subject subject = filtered(R"([{"language": "de"}])", english);

    EXPECT_EQ(subject.admitted, false);
    EXPECT_EQ(subject.reason, Reason::valueDiffers);
    EXPECT_EQ(subject.text, "is refused: its only alternative declares language \"de\", but the condition is \"en\"");
    EXPECT_EQ(subject.change, (Conditions{{"language", "de", false}}));
}

TEST_F(ExplainBundle, GivenSeveralAlternatives_WhenNoneMatches_ThenEachIsTold)
{
    EXPECT_EQ(filtered(R"([{"language": "de"}, {"mode": 1}, 5])", required).text,
              "is refused: none of its 3 alternatives matches: 1 declares language \"de\", but the condition is "
              "\"en\"; 2 names none of the required conditions: \"language\"; 3 is no map");
}

TEST_F(ExplainBundle, GivenRequiredConditions_WhenNoneIsNamed_ThenTheyAreListedInOrder)
{
    EXPECT_EQ(filtered(R"([{"mode": 1}])", twoRequired).text,
              "is refused: its only alternative names none of the required conditions: \"a\", \"b\"");
}

TEST_F(ExplainBundle, GivenNoDeclaration_WhenExplained_ThenTheRequiredConditionDecides)
{
    EXPECT_EQ(explain(componentManifest("a"), english).text,
              "starts: it declares no filters, and no condition is required");
    EXPECT_EQ(explain(componentManifest("a"), required).text,
              "is refused: it declares no filters, but this is required: \"language\"");
    EXPECT_EQ(explain(componentManifest("a"), twoRequired).text,
              "is refused: it declares no filters, but one of these is required: \"a\", \"b\"");
}

TEST_F(ExplainBundle, GivenMapInsteadOfList_WhenNothingIsRequired_ThenItStarts)
{
    EXPECT_EQ(filtered(R"({"language": "de"})", english).text,
              "starts: its filters are no list and count as none, and no condition is required");
}

TEST_F(ExplainBundle, GivenMapInsteadOfList_WhenSomethingIsRequired_ThenItIsRefused)
{
    EXPECT_EQ(filtered(R"({"language": "en"})", required).text,
              "is refused: its filters are no list and count as none, but this is required: \"language\"");
}

TEST_F(ExplainBundle, GivenEmptyList_WhenExplained_ThenNoChangeAdmits)
{
    const Subject subject = filtered("[]", english);

    EXPECT_EQ(subject.text, "is refused: its list of filters is empty, which admits nothing");
    EXPECT_FALSE(subject.change);
}

TEST_F(ExplainBundle, GivenListWithoutMap_WhenExplained_ThenThatIsTold)
{
    EXPECT_EQ(filtered("[5]", english).text, "is refused: its only alternative is no map");
    EXPECT_EQ(filtered("[5]", english).reason, Reason::noMap);
}

TEST_F(ExplainBundle, GivenNoComponentName_WhenExplained_ThenTheStartEnds)
{
    const Subject subject = explain(manifestText("a"), english);

    EXPECT_EQ(subject.name, "a");
    EXPECT_FALSE(subject.admitted.has_value());
    EXPECT_EQ(toText(subject.reason), "no-component-name");
    EXPECT_EQ(subject.text, R"(ends the start: its manifest has no "zq": {"component": {"name": ...}})");
    EXPECT_FALSE(subject.change);
}

TEST_F(ExplainBundle, GivenNumberAsComponentName_WhenExplained_ThenItsTextIsTheName)
{
    EXPECT_EQ(explain(R"({"bundle.symbolic_name": "a", "zq": {"component": {"name": 5}}})", english).name, "5");
}

class ExplainService : public HostFixture {
protected:
    Subject explain(const cppmicroservices::ServiceProperties& properties, const FilterMap& conditions)
    {
        const auto registration = host.context().RegisterService<int>(std::make_shared<int>(1), properties);
        return explainService(registration.GetReference(), conditions);
    }

    static cppmicroservices::Any zq(const std::string& name, const std::string& value)
    {
        cppmicroservices::AnyMap alternative{cppmicroservices::any_map::ORDERED_MAP};
        alternative[name] = value;
        cppmicroservices::AnyMap map{cppmicroservices::any_map::ORDERED_MAP};
        map["ostrelStartupLoadFilters"] = std::vector<cppmicroservices::Any>{alternative};
        return map;
    }
};

TEST_F(ExplainService, GivenNoZqMap_WhenSomethingIsRequired_ThenItIsLoadedUnasked)
{
    const Subject subject = explain({{"zq", std::string{"text"}}}, required);

    EXPECT_EQ(subject.kind, SubjectKind::service);
    EXPECT_EQ(subject.name, "1");
    EXPECT_EQ(subject.bundle, "system_bundle");
    EXPECT_EQ(subject.admitted, true);
    EXPECT_EQ(toText(subject.reason), "no-zq-map");
    EXPECT_EQ(subject.text, "is loaded: it has no property \"zq\" that is a map, so nothing is asked");
}

TEST_F(ExplainService, GivenZqMapWithoutFilters_WhenSomethingIsRequired_ThenItIsRefused)
{
    const Subject subject =
        explain({{"zq", cppmicroservices::AnyMap{cppmicroservices::any_map::ORDERED_MAP}}}, required);

    EXPECT_EQ(subject.reason, Reason::noDeclarationButRequired);
    EXPECT_EQ(subject.text, "is refused: it declares no filters, but this is required: \"language\"");
}

TEST_F(ExplainService, GivenFilters_WhenExplained_ThenTheyDecide)
{
    EXPECT_EQ(explain({{"zq", zq("language", "en")}}, required).text, "is loaded: alternative 1 of 1 matches");
    EXPECT_EQ(explain({{"zq", zq("language", "de")}}, required).change, (Conditions{{"language", "de", true}}));
}

class ExplainDirectory : public HostFixture {
protected:
    Explanation explain(const FilterMap& conditions)
    {
        return explainDirectory(host.context(), host.directory(), conditions);
    }

    std::string path(const std::string& file) const { return host.directory() / file; }
};

TEST_F(ExplainDirectory, GivenSlipInAManifest_WhenExplained_ThenItsPlaceIsAHint)
{
    host.write("a.zip", bundleWith("a", R"({"bundle.symbolic_name": "a",
  "zq": {"component": {"name": "c"},
         "ostrelFilter": []}})"));

    const Explanation explanation = explain(required);

    ASSERT_EQ(explanation.subjects.size(), 1U);
    EXPECT_EQ(explanation.subjects[0].file, path("a.zip"));
    EXPECT_THAT(explanation.subjects[0].hints,
                ElementsAre("line 3, column 10 of manifest.json: unknown key \"ostrelFilter\" in \"zq\": did you mean "
                            "\"ostrelFilters\"?"));
}

TEST_F(ExplainDirectory, GivenFilesThatHoldNoBundle_WhenExplained_ThenTheOthersAreExplainedAllTheSame)
{
    host.write("a.so", "text");
    host.write("b.zip", bundleFiltered("b", "[]"));
    host.write("c.txt", "text");

    const Explanation explanation = explain(english);

    ASSERT_EQ(explanation.findings.size(), 1U);
    EXPECT_EQ(explanation.findings[0].file, path("a.so"));
    ASSERT_EQ(explanation.subjects.size(), 1U);
    EXPECT_EQ(explanation.subjects[0].name, "component.b");
    EXPECT_THAT(explanation.passedOver,
                ElementsAre(PassedOver{path("c.txt"), "it is neither a shared object nor a zip archive"}));
}

TEST_F(ExplainDirectory, GivenExplanation_WhenWritten_ThenEachSubjectHasItsLines)
{
    host.write("a.zip", bundleFiltered("a", R"([{"language": "de"}])"));
    host.write("b.zip", bundleFiltered("b", "[]"));
    host.write("c.zip", bundleWith("c", R"({"bundle.symbolic_name": "c", "zq": {"component": {"name": "c"}}})"));

    EXPECT_EQ(
        toText(explain({{"language", {"en", true}}, {"mode", {"x y", false}}})),
        "component.a is refused: its only alternative declares language \"de\", but the condition is \"en\"\n"
        "  file:   " +
            path("a.zip") +
            " (bundle a)\n"
            "  change: change --require language=en to --require language=de\n"
            "  then:   --require language=de --when 'mode=x y'\n"
            "component.b is refused: its list of filters is empty, which admits nothing\n"
            "  file:   " +
            path("b.zip") +
            " (bundle b)\n"
            "  hint:   line 1, column 120 of manifest.json: key \"zq.ostrelFilters\" is an empty array, so that no "
            "conditions ever admit the bundle; leave the key out to have it admitted by all hosts that require "
            "nothing\n"
            "  change: no change of the conditions admits it\n"
            "c is refused: it declares no filters, but this is required: \"language\"\n"
            "  file:   " +
            path("c.zip") +
            "\n"
            "  change: change --require language=en to --when language=en\n"
            "  then:   --when language=en --when 'mode=x y'\n");
}

/// The options that are said to admit, as they are to be written in a shell.
std::string thenLine(const std::string& value)
{
    Explanation explanation;
    Subject subject;
    subject.admitted = false;
    subject.change = Conditions{{"n", value, false}};
    explanation.subjects.push_back(subject);
    const std::string text = toText(explanation);
    const std::string label = "  then:   ";
    const std::size_t begin = text.find(label) + label.size();
    return text.substr(begin, text.size() - begin - 1);
}

TEST(ExplanationText, GivenValueThatAShellTakesApart_WhenWritten_ThenItIsQuoted)
{
    EXPECT_EQ(thenLine("azAZ09_-+=.,:/@%"), "--when n=azAZ09_-+=.,:/@%");
    for (const char odd : std::string{"`{[;~!$&()*? \"\\<>|#^]}"}) {
        EXPECT_EQ(thenLine(std::string{odd}), "--when 'n=" + std::string{odd} + '\'');
    }
    EXPECT_EQ(thenLine("it's"), "--when 'n=it'\\''s'");
    EXPECT_EQ(thenLine("é"), "--when 'n=é'");
}

TEST_F(ExplainDirectory, GivenTextsThatForgeLines_WhenWritten_ThenTheyAreEscaped)
{
    host.write("a.zip", bundleWith("a", R"({"bundle.symbolic_name": "a",
        "zq": {"component": {"name": "x\nb starts\u001b[2J"}}})"));

    EXPECT_EQ(toText(explain({})), "x\\nb starts\\x1B[2J starts: it declares no filters, and no condition is required\n"
                                   "  file:   " +
                                       path("a.zip") + " (bundle a)\n");
}

} // namespace
