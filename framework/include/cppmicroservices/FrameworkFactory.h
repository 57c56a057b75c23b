#pragma once

#include "cppmicroservices/Any.h"
#include "cppmicroservices/FrameworkConfig.h"

#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>

namespace cppmicroservices {

class Framework;

using FrameworkConfiguration = std::unordered_map<std::string, Any>;

/// Makes frameworks; any number of them live side by side in one process.
class US_Framework_EXPORT FrameworkFactory {
public:
    /// @param configuration properties that BundleContext::GetProperty() gives back; see Constants.h for those that
    ///        the framework reads itself
    /// @param logger receives diagnostics when the property "org.cppmicroservices.framework.log" is true; must outlive
    ///        the framework, and nothing else may write to it meanwhile. Null: none are written.
    /// @throws BadAnyCastException when that property is no bool, or the validation function is none
    Framework NewFramework(FrameworkConfiguration const& configuration, std::ostream* logger = nullptr);
    Framework NewFramework();

    US_DEPRECATED Framework NewFramework(std::map<std::string, Any> const& configuration,
                                         std::ostream* logger = nullptr);
};

} // namespace cppmicroservices
