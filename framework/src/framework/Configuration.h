#pragma once

#include "bundle/BundleRecord.h"

#include "cppmicroservices/AnyMap.h"

#include <functional>
#include <string>
#include <unordered_map>

namespace cppmicroservices::detail::core {

/// The given properties, with the defaults for those that are missing and the framework's own facts in any case; but
/// for the uuid.
AnyMap completeConfiguration(std::unordered_map<std::string, Any> const& given);

/// The same with a new uuid: each run of a framework has its own.
AnyMap withNewUuid(AnyMap properties);

// What the framework itself reads of them.

/// Flags for dlopen; RTLD_NOW unless an int is given, so that an undefined symbol is an exception at the start of the
/// bundle instead of the end of the process at some later call.
int loadOptionsIn(std::unordered_map<std::string, Any> const& given);
bool loadOptionsAreUsable(AnyMap const& properties);

/// @throws BadAnyCastException when it is no bool
bool logsIn(AnyMap const& properties);

/// Empty when there is none. Of no use before checkValidation().
std::function<bool(Bundle const&)> validationIn(AnyMap const& properties);

/// @throws BadAnyCastException when the validation is something else than such a function
void checkValidation(AnyMap const& properties);

/// The framework as a bundle.
BundleIdentity systemBundleIdentity();

} // namespace cppmicroservices::detail::core
