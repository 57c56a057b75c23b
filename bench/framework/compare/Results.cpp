#include "Results.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/istreamwrapper.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace bench {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(fs::path const& file, std::string const& why)
{
    throw std::runtime_error(file.string() + ": " + why + "; measure again with --benchmark_out=" + file.string());
}

std::string textAt(rapidjson::Value const& object, char const* key)
{
    auto const found = object.FindMember(key);
    return found != object.MemberEnd() && found->value.IsString() ? found->value.GetString() : "";
}

bool isTrueAt(rapidjson::Value const& object, char const* key)
{
    auto const found = object.FindMember(key);
    return found != object.MemberEnd() && found->value.IsTrue();
}

double numberAt(rapidjson::Value const& object, char const* key, fs::path const& file)
{
    auto const found = object.FindMember(key);
    if (found == object.MemberEnd() || !found->value.IsNumber()) {
        refuse(file, std::string("a benchmark lacks the number '") + key + "'");
    }
    return found->value.GetDouble();
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
    rapidjson::IStreamWrapper input(stream);
    rapidjson::Document document;
    document.ParseStream(input);
    if (document.HasParseError()) {
        refuse(file, rapidjson::GetParseError_En(document.GetParseError()));
    }
    if (!document.IsObject() || !document.HasMember("benchmarks") || !document["benchmarks"].IsArray()) {
        refuse(file, "holds no benchmarks");
    }
    for (auto const& entry : document["benchmarks"].GetArray()) {
        if (textAt(entry, "run_type") != "iteration") {
            continue;
        }
        auto name = textAt(entry, "run_name");
        if (isTrueAt(entry, "error_occurred")) {
            refuse(file, name + " reports '" + textAt(entry, "error_message") + "'");
        }
        bool const wall = stripSettings(name);
        auto& measurement = round[name];
        if (entry.HasMember("bytes")) {
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
