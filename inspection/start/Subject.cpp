#include "inspection/start/Subject.h"

#include "inspection/filter/Attempt.h"
#include "inspection/filter/Decision.h"
#include "inspection/start/Sentence.h"

#include <cppmicroservices/AnyMap.h>

#include <typeinfo>

namespace ostrel::inspection {
namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using us_container::FilterMap;

void decide(Subject& subject, const Any& filters, const FilterMap& filterMap, Depth depth)
{
    FilterExplanation explanation =
        depth == Depth::change ? explainFilter(filters, filterMap) : explainDecision(filters, filterMap);
    subject.admitted = explanation.admitted;
    subject.reason = explanation.reason;
    subject.alternatives = std::move(explanation.alternatives);
    subject.hints = std::move(explanation.hints);
    subject.change = std::move(explanation.change);
}

} // namespace

Subject subjectOf(const Bundle& bundle, const FilterMap& filterMap, Depth depth, Vocabulary& vocabulary)
{
    Subject subject;
    subject.bundle = bundle.GetSymbolicName();
    subject.file = bundle.GetLocation();
    const AnyMap& headers = bundle.GetHeaders();
    // As startBundles() reads it; so whatever throws there is seen here.
    auto name = attempted([&headers] { return headers.AtCompoundKey("zq.component.name").ToString(); });
    if (name) {
        subject.name = std::move(*name);
        const Any filters = headers.AtCompoundKey("zq.ostrelFilters", Any{});
        decide(subject, filters, filterMap, depth);
        addDeclared(vocabulary, filters);
    } else {
        subject.name = subject.bundle;
        subject.reason = Reason::noComponentName;
    }
    subject.text = sentenceOf(subject, filterMap);
    return subject;
}

Subject explainBundle(const Bundle& bundle, const FilterMap& filterMap)
{
    Vocabulary unused;
    return subjectOf(bundle, filterMap, Depth::change, unused);
}

Subject explainService(const cppmicroservices::ServiceReferenceBase& service, const FilterMap& filterMap)
{
    Subject subject;
    subject.kind = SubjectKind::service;
    subject.name = service.GetProperty("service.id").ToString();
    if (const Bundle bundle = service.GetBundle()) {
        subject.bundle = bundle.GetSymbolicName();
        subject.file = bundle.GetLocation();
    }
    const Any zq = service.GetProperty("zq");
    if (zq.Type() == typeid(AnyMap)) {
        const auto& map = cppmicroservices::ref_any_cast<AnyMap>(zq);
        decide(subject, map.AtCompoundKey("ostrelStartupLoadFilters", Any{}), filterMap, Depth::change);
    } else {
        subject.admitted = true;
        subject.reason = Reason::noZqMap;
    }
    subject.text = sentenceOf(subject, filterMap);
    return subject;
}

} // namespace ostrel::inspection
