// What a Bundle tells of its manifest in the forms before GetHeaders(), and of its library.

#include "bundle/BundleRecord.h"
#include "framework/FrameworkCore.h"
#include "framework/HandleAccess.h"

#include "cppmicroservices/Bundle.h"

#include <dlfcn.h>
#include <stdexcept>

namespace cppmicroservices {

namespace {

using detail::core::HandleAccess;
using Properties = std::map<std::string, Any>;

Properties toProperties(AnyMap const& map);

/// A map becomes a std::map, also within maps; what is in a list stays as it is.
Any toProperty(Any const& value)
{
    auto const* const map = any_cast<AnyMap>(&value);
    return map != nullptr ? Any(toProperties(*map)) : value;
}

Properties toProperties(AnyMap const& map)
{
    Properties result;
    for (auto const& [key, value] : map) {
        result.emplace(key, toProperty(value));
    }
    return result;
}

/// The manifest, which the framework's own bundle has none of for this purpose.
Properties propertiesOf(detail::core::BundleRecord const& record)
{
    return record.isSystemBundle() ? Properties() : toProperties(record.headers());
}

} // namespace

void* Bundle::GetSymbol(void* handle, std::string const& symname) const
{
    auto const& record = HandleAccess::record(*this);
    if (!record || handle == nullptr || symname.empty()) {
        throw std::invalid_argument("Error : Either bundle or inputs supplied are invalid!");
    }
    if (record->state() != STATE_ACTIVE) {
        throw std::runtime_error("Bundle is not started and active!");
    }
    return dlsym(handle, symname.c_str());
}

std::map<std::string, Any> Bundle::GetProperties() const
{
    return propertiesOf(*HandleAccess::requireRecord(*this));
}

Any Bundle::GetProperty(std::string const& key) const
{
    auto const& record = *HandleAccess::requireRecord(*this);
    if (!record.isSystemBundle()) {
        auto const found = record.headers().find(key);
        // Other than in the headers themselves, the case of a key matters here.
        if (found != record.headers().cend() && found->first == key) {
            return toProperty(found->second);
        }
    }
    auto const core = record.core();
    if (!core) {
        return {};
    }
    auto const properties = core->properties();
    auto const found = properties->find(key);
    return found != properties->cend() ? found->second : Any();
}

std::vector<std::string> Bundle::GetPropertyKeys() const
{
    std::vector<std::string> keys;
    for (auto const& entry : propertiesOf(*HandleAccess::requireRecord(*this))) {
        keys.push_back(entry.first);
    }
    return keys;
}

} // namespace cppmicroservices
