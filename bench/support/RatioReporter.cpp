#include "support/RatioReporter.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

namespace bench {

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        // With aggregates alone there are no single repetitions, but the median that is wanted.
        const bool isTime = run.run_type == Run::RT_Iteration || run.aggregate_name == "median";
        if (isTime && !run.error_occurred) {
            m_cpuTimes[run.run_name.str()].push_back(run.GetAdjustedCPUTime());
        }
    }
    ConsoleReporter::ReportRuns(runs);
}

void RatioReporter::printRatios() const
{
    std::cout << "\nby the library / by hand (CPU time, median of the repetitions)\n";
    for (const auto& [name, times] : m_cpuTimes) {
        for (const std::string& library : {std::string{"ByContainer"}, std::string{"ByInspection"}}) {
            const auto at = name.find(library);
            if (at == std::string::npos) {
                continue;
            }
            std::string other = name;
            other.replace(at, library.size(), "ByHand");
            const auto byHand = m_cpuTimes.find(other);
            if (byHand != m_cpuTimes.end()) {
                std::cout << std::left << std::setw(40) << name << std::fixed << std::setprecision(3)
                          << median(times) / median(byHand->second) << "\n";
            }
        }
    }
}

} // namespace bench
