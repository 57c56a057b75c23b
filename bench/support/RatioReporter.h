#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints the usual table, and at the end how each "…ByContainer…" and
/// "…ByInspection…" compares with its "…ByHand…" of the same run.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void printRatios() const;

private:
    std::map<std::string, std::vector<double>> m_cpuTimes; ///< benchmark name to time per iteration, each repetition
};

} // namespace bench
