#include "inspection/FilterExplanation.h"

namespace ostrel::inspection {

std::string_view toText(Reason reason)
{
    switch (reason) {
    case Reason::alternativeMatches:
        return "alternative-matches";
    case Reason::noDeclaration:
        return "no-declaration";
    case Reason::noDeclarationButRequired:
        return "no-declaration-but-required";
    case Reason::notAList:
        return "not-a-list";
    case Reason::notAListButRequired:
        return "not-a-list-but-required";
    case Reason::emptyList:
        return "empty-list";
    case Reason::noMap:
        return "no-map";
    case Reason::valueDiffers:
        return "value-differs";
    case Reason::requiredNotNamed:
        return "required-not-named";
    case Reason::unreadable:
        return "unreadable";
    case Reason::noZqMap:
        return "no-zq-map";
    case Reason::noComponentName:
        break;
    }
    return "no-component-name";
}

std::string_view toText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::matches:
        return "matches";
    case Verdict::valueDiffers:
        return "value-differs";
    case Verdict::requiredNotNamed:
        return "required-not-named";
    case Verdict::notAMap:
        return "not-a-map";
    case Verdict::unreadable:
        return "unreadable";
    case Verdict::notReached:
        break;
    }
    return "not-reached";
}

} // namespace ostrel::inspection
