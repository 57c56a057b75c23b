#include "inspection/FilterExplanation.h"

#include "filtering/Decision.h"
#include "inspection/filter/Attempt.h"
#include "inspection/filter/Decision.h"
#include "inspection/filter/DeclaredTexts.h"
#include "inspection/filter/SmallestChange.h"

#include <algorithm>
#include <typeinfo>

namespace ostrel::inspection {

using cppmicroservices::Any;
using us_container::FilterMap;

namespace {

std::vector<std::string> requiredNames(const FilterMap& filterMap)
{
    std::vector<std::string> names;
    for (const auto& [name, condition] : filterMap) {
        if (condition.second) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Notes each step of the decision.
class Notes {
public:
    Notes(const FilterMap& filterMap, FilterExplanation& explanation)
        : m_filterMap{filterMap}, m_explanation{explanation}
    {
    }

    void isList(const Any& filters)
    {
        m_explanation.alternatives.resize(cppmicroservices::ref_any_cast<std::vector<Any>>(filters).size());
        m_explanation.reason = m_explanation.alternatives.empty() ? Reason::emptyList : Reason::noMap;
    }

    void isJudged(const filtering::Judgement& judgement)
    {
        Alternative& alternative = m_explanation.alternatives[m_judged++];
        switch (judgement.verdict) {
        case filtering::Verdict::matches:
            alternative.verdict = Verdict::matches;
            m_explanation.reason = Reason::alternativeMatches;
            break;
        case filtering::Verdict::valueDiffers:
            alternative.verdict = Verdict::valueDiffers;
            alternative.differs.push_back(
                {judgement.attribute, judgement.declared, m_filterMap.at(judgement.attribute).first});
            m_explanation.reason = Reason::valueDiffers;
            break;
        case filtering::Verdict::requiredNotNamed:
            alternative.verdict = Verdict::requiredNotNamed;
            alternative.missing = requiredNames(m_filterMap);
            if (m_explanation.reason == Reason::noMap) {
                m_explanation.reason = Reason::requiredNotNamed;
            }
            break;
        case filtering::Verdict::notAMap:
            alternative.verdict = Verdict::notAMap;
            break;
        }
    }

    void noneMatches() const {}

    void isNoList(const Any& filters) { m_isDeclared = !filters.Empty(); }

    void isDecidedWithout(bool admitted)
    {
        m_explanation.reason = m_isDeclared ? (admitted ? Reason::notAList : Reason::notAListButRequired)
                                            : (admitted ? Reason::noDeclaration : Reason::noDeclarationButRequired);
    }

    /// The one that was being judged cannot be read, and that decides.
    void isUnreadable()
    {
        m_explanation.reason = Reason::unreadable;
        if (m_judged < m_explanation.alternatives.size()) {
            m_explanation.alternatives[m_judged].verdict = Verdict::unreadable;
        }
    }

private:
    const FilterMap& m_filterMap;
    FilterExplanation& m_explanation;
    std::size_t m_judged = 0;
    bool m_isDeclared = false;
};

} // namespace

FilterExplanation explainDecision(const Any& filters, const FilterMap& filterMap)
{
    FilterExplanation explanation;
    Notes notes{filterMap, explanation};
    const auto decided = attempted([&] { return filtering::decide(filters, filterMap, notes); });
    if (!decided) {
        notes.isUnreadable();
    }
    explanation.admitted = decided.value_or(true);
    return explanation;
}

FilterExplanation explainFilter(const Any& filters, const FilterMap& filterMap)
{
    FilterExplanation explanation = explainDecision(filters, filterMap);
    if (!explanation.admitted) {
        const DeclaredTexts texts = readTexts(filters);
        if (!texts.isPlain && !attempted([&filters] { return filters.ToJSON(); })) {
            explanation.hints.emplace_back("the declaration cannot be written as JSON, so it is admitted while records "
                                           "of its evaluation are on");
        }
        explanation.change = smallestChange(filters, texts, filterMap);
    }
    return explanation;
}

} // namespace ostrel::inspection
