#include "bundle_reader/elf/FrameworkNeeded.h"

namespace ostrel::bundle_reader {
namespace {

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

} // namespace

Framework frameworkNamed(std::string_view fileName)
{
    if (beginsWith(fileName, "libostrel_framework.so")) {
        return Framework::embedded;
    }
    return beginsWith(fileName, "libCppMicroServices.so") ? Framework::installed : Framework::none;
}

BuiltFor builtFor(const std::vector<std::string>& needed, Framework except)
{
    for (const std::string& name : needed) {
        const Framework framework = frameworkNamed(name);
        if (framework != Framework::none && framework != except) {
            return {framework, name};
        }
    }
    return {};
}

} // namespace ostrel::bundle_reader
