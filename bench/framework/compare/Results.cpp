#include "Results.h"

#include "bundle_reader/manifest/Json.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace bench {

namespace {

namespace fs = std::filesystem;
using ostrel::bundle_reader::JsonValue;

[[noreturn]] void refuse(fs::path const& file, std::string const& why)
{
    throw std::runtime_error(file.string() + ": " + why + "; measure again with --benchmark_out=" + file.string());
}

JsonValue const* valueAt(JsonValue const& map, std::string_view key)
{
    auto const found =
        std::find_if(map.members.begin(), map.members.end(), [key](auto const& member) { return member.key == key; });
    return found == map.members.end() ? nullptr : &found->value;
}

std::string textAt(JsonValue const& map, std::string_view key)
{
    auto const* const value = valueAt(map, key);
    return value == nullptr ? "" : value->text;
}

bool isTrueAt(JsonValue const& map, std::string_view key)
{
    auto const* const value = valueAt(map, key);
    return value != nullptr && value->boolean;
}

double numberAt(JsonValue const& map, std::string_view key, fs::path const& file)
{
    auto const* const value = valueAt(map, key);
    if (value != nullptr && value->kind == JsonValue::Kind::number) {
        return value->number;
    }
    if (value != nullptr && (value->kind == JsonValue::Kind::integer || value->kind == JsonValue::Kind::wideInteger)) {
        return static_cast<double>(value->integer);
    }
    refuse(file, "a benchmark lacks the number '" + std::string(key) + "'");
}

/// Takes "/manual_time", "/iterations:5" and the like off the name; true when there was one that asks for wall time.
bool stripSettings(std::string& name)
{
    bool wall = false;
    for (std::string const setting : {"/manual_time", "/real_time", "/iterations:"}) {
        auto const at = name.find(setting);
        if (at != std::string::npos) {
            wall = wall || setting.back() == 'e';
            name.erase(at, name.find('/', at + 1) - at);
        }
    }
    return wall;
}

void readInto(std::map<std::string, Measurement>& round, std::vector<std::string>& names, fs::path const& file)
{
    std::ifstream stream(file);
    std::string const text(std::istreambuf_iterator<char>(stream), {});
    auto const json = ostrel::bundle_reader::readJson(text);
    if (json.fault) {
        refuse(file, json.fault->words);
    }
    auto const* const benchmarks = valueAt(json.root, "benchmarks");
    if (benchmarks == nullptr || benchmarks->kind != JsonValue::Kind::list) {
        refuse(file, "holds no benchmarks");
    }
    for (auto const& entry : benchmarks->items) {
        if (textAt(entry, "run_type") != "iteration") {
            continue;
        }
        auto name = textAt(entry, "run_name");
        if (isTrueAt(entry, "error_occurred")) {
            refuse(file, name + " reports '" + textAt(entry, "error_message") + "'");
        }
        bool const wall = stripSettings(name);
        auto& measurement = round[name];
        if (valueAt(entry, "bytes") != nullptr) {
            measurement.unit = "B";
            measurement.rounds.push_back(numberAt(entry, "bytes", file));
        } else {
            measurement.unit = textAt(entry, "time_unit");
            measurement.rounds.push_back(numberAt(entry, wall ? "real_time" : "cpu_time", file));
        }
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
}

} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    auto const middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Results readResults(fs::path const& folder, std::string const& framework)
{
    Results results;
    for (int number = 1;; ++number) {
        auto const file = folder / (framework + "-" + std::to_string(number) + ".json");
        if (!fs::exists(file)) {
            if (number == 1) {
                refuse(file, "does not exist");
            }
            return results;
        }
        std::map<std::string, Measurement> round;
        readInto(round, results.names, file);
        for (auto& [name, measurement] : round) {
            auto& all = results.measurements[name];
            all.unit = measurement.unit;
            all.rounds.push_back(median(std::move(measurement.rounds)));
        }
    }
}

} // namespace bench
