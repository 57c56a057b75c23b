#include "Table.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace bench {

namespace {

Measurement const& measurementOf(Results const& results, std::string const& name, char const* framework)
{
    auto const found = results.measurements.find(name);
    if (found == results.measurements.end()) {
        throw std::runtime_error(name + " was not measured on the " + framework +
                                 " framework; build both programs from the same sources and measure again");
    }
    return found->second;
}

/// Three digits that count.
std::string amount(double value, std::string unit)
{
    if (unit == "us" && value < 1) {
        value *= 1000;
        unit = "ns";
    } else if (unit == "us" && value >= 1000) {
        value /= 1000;
        unit = "ms";
    }
    if (unit == "us") {
        unit = "µs";
    }
    std::ostringstream text;
    text << std::fixed << std::setprecision(value < 10 ? 2 : value < 100 ? 1 : 0) << value << ' ' << unit;
    return text.str();
}

std::string ratio(double value)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(value < 10 ? 2 : value < 100 ? 1 : 0) << value;
    return text.str();
}

} // namespace

void writeTable(std::ostream& os, Results const& real, Results const& embedded)
{
    for (auto const& name : embedded.names) {
        measurementOf(real, name, "installed"); // whose list alone is gone through below
    }
    os << "| Operation | Services | Installed | Embedded | Ratio | of the rounds |\n|---|---|---|---|---|---|\n";
    std::string last;
    for (auto const& name : real.names) {
        auto const& theirs = measurementOf(real, name, "installed");
        auto const& ours = measurementOf(embedded, name, "embedded");
        auto const slash = name.find('/');
        auto operation = name.substr(0, slash);
        auto argument = slash != std::string::npos ? name.substr(slash + 1) : std::string();
        if (argument.find_first_not_of("0123456789") != std::string::npos) {
            operation = name;
            argument.clear();
        }
        std::vector<double> ratios;
        for (std::size_t i = 0; i < std::min(theirs.rounds.size(), ours.rounds.size()); ++i) {
            ratios.push_back(theirs.rounds[i] / ours.rounds[i]);
        }
        auto const [least, greatest] = std::minmax_element(ratios.begin(), ratios.end());
        auto const installedTime = median(theirs.rounds);
        auto const embeddedTime = median(ours.rounds);
        os << "| " << (operation == last ? "" : "`" + operation + "`") << " | " << argument << " | "
           << amount(installedTime, theirs.unit) << " | " << amount(embeddedTime, ours.unit) << " | "
           << ratio(installedTime / embeddedTime) << " | " << ratio(*least) << " – " << ratio(*greatest) << " |\n";
        last = operation;
    }
}

} // namespace bench
