#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// What one framework took for one benchmark, in each of the rounds: the median of a round's repetitions.
struct Measurement {
    std::vector<double> rounds;
    std::string unit;
};

/// The measurements of one framework by the name of the benchmark, and the names in the order of their first
/// appearance.
struct Results {
    std::map<std::string, Measurement> measurements;
    std::vector<std::string> names;
};

/// Reads all files `FRAMEWORK-N.json` in the folder, N from 1 up, as a benchmark writes them with --benchmark_out.
///
/// Wall time counts for benchmarks with a clock of their own and for those on several threads, processor time for the
/// others, and bytes for those that count bytes.
///
/// @throws std::runtime_error that names the file when there is none, or one is malformed or tells of an error
Results readResults(std::filesystem::path const& folder, std::string const& framework);

double median(std::vector<double> values);

} // namespace bench
