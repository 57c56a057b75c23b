#include "hosting/UnloadProblem.h"

namespace ostrel::host {

namespace {

constexpr const char* repairStop = "repair its activator's Stop()";

bool beginsWith(const std::string& text, const char* with)
{
    return text.rfind(with, 0) == 0;
}

/// The activator's own words, behind those of the container and of the framework.
std::string reasonOfStop(const std::string& record)
{
    const std::string words = ", BundleActivator::Stop() failed: ";
    const std::size_t begin = record.find(words);
    if (begin == std::string::npos) {
        return record;
    }
    const std::string reason = record.substr(begin + words.size());
    return reason == "unknown" ? "it threw something that is no std::exception" : reason;
}

Problem::Text unloadProblem(const InstalledBundles& bundles, const std::string& directory, const std::string& record)
{
    const cppmicroservices::Bundle bundle = bundles.culprit(record);
    const std::string file = bundle ? bundle.GetLocation() : directory;
    const std::string name = bundle ? "the bundle \"" + bundle.GetSymbolicName() + '"' : "a bundle";
    if (beginsWith(record, "Error while stoping ") || beginsWith(record, "Unknown error while stoping ")) {
        return {name + " did not stop in order: its stop threw an exception",
                file,
                {reasonOfStop(record)},
                repairStop,
                inspection::Code::stopThrows};
    }
    if (beginsWith(record, "Error while unloading service ")) {
        return {"a service was not released in order", file, {record}, "repair what happens when it is released"};
    }
    return {name + " did not stop", file, {record}, repairStop};
}

} // namespace

std::vector<Problem::Text> unloadProblems(const InstalledBundles& bundles, const std::string& directory,
                                          const std::vector<std::string>& records)
{
    std::vector<Problem::Text> texts;
    texts.reserve(records.size());
    for (const std::string& record : records) {
        texts.push_back(unloadProblem(bundles, directory, record));
    }
    return texts;
}

} // namespace ostrel::host
