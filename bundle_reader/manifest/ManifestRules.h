#pragma once

#include "bundle_reader/manifest/Json.h"

#include <optional>
#include <string_view>

/// What frameworks make of a manifest: what they leave out, which of several keys counts, and what a text becomes.
namespace ostrel::bundle_reader {

/// True for what frameworks leave out of maps and lists: null, and integers that are no int.
bool isDropped(const JsonValue& value);

/// True for keys that are equal but for the case of ASCII letters, which are one to frameworks.
bool isSameKey(std::string_view left, std::string_view right);

/// The member that counts of those with this key: the first that is not dropped. Null when there is none.
const JsonMember* findMember(const JsonValue& map, std::string_view key);

/// A text as frameworks take it. A percent sign at the beginning marks the name of a text that is to be looked up for
/// the user's language. There are none, and then the name itself is the text.
std::string_view localized(std::string_view text);

/// The text that frameworks read the version from; none when there is no version, or one that is no text.
///
/// @return a view of the manifest
std::optional<std::string_view> versionText(const JsonValue& manifest);

/// True when the manifest says that the bundle has an activator.
bool asksForActivator(const JsonValue& manifest);

} // namespace ostrel::bundle_reader
