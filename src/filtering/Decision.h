#pragma once

#include "filtering/Matcher.h"

#include <typeinfo>
#include <vector>

namespace ostrel::filtering {

/// Decides whether a declaration admits its subject, and tells `watcher` each step:
///
/// - `isList(filters)` before the alternatives are looked at, then `isJudged(judgement)` for each up to the first that
///   matches, and `noneMatches()` when there is none;
/// - `isNoList(filters)` where there is no list, then `isDecidedWithout(admitted)`.
///
/// @throws what judge() and the watcher throw
template <class Watcher>
bool decide(const cppmicroservices::Any& filters, const Conditions& conditions, Watcher&& watcher)
{
    using List = std::vector<cppmicroservices::Any>;
    if (filters.Type() != typeid(List)) {
        watcher.isNoList(filters);
        const bool admitted = !anyRequired(conditions);
        watcher.isDecidedWithout(admitted);
        return admitted;
    }
    watcher.isList(filters);
    for (const cppmicroservices::Any& alternative : cppmicroservices::ref_any_cast<List>(filters)) {
        const Judgement judgement = judge(alternative, conditions);
        watcher.isJudged(judgement);
        if (judgement.verdict == Verdict::matches) {
            return true;
        }
    }
    watcher.noneMatches();
    return false;
}

} // namespace ostrel::filtering
