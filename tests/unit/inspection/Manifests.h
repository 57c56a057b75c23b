#pragma once

#include "unit/ZipText.h"

#include <string>

namespace ostrel::test {

/// A bundle file with one bundle.
inline std::string bundleWith(const std::string& name, const std::string& manifest)
{
    return zipText({{name + "/manifest.json", manifest}});
}

/// A manifest with a component name; `more` follows within "zq".
inline std::string componentManifest(const std::string& name, const std::string& more = "",
                                     const std::string& version = "1.0.0")
{
    return R"({"bundle.symbolic_name": ")" + name + R"(", "bundle.version": ")" + version +
           R"(", "zq": {"component": {"name": "component.)" + name + "\"}" + (more.empty() ? "" : ", " + more) + "}}";
}

/// A bundle that declares these filters, in JSON.
inline std::string bundleFiltered(const std::string& name, const std::string& filters)
{
    return bundleWith(name, componentManifest(name, "\"ostrelFilters\": " + filters));
}

} // namespace ostrel::test
