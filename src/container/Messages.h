#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The text of every record that the library writes, in one place.
///
/// A message is `Values + 1` literals around its values: literal, value, literal, value, …, literal. Literals carry
/// their own blanks and punctuation; nothing is added between the pieces.
namespace ostrel::us_container::messages {

template <std::size_t Values>
struct Message {
    std::uint32_t severity;
    std::array<std::string_view, Values + 1> literals;
};

inline constexpr std::uint32_t decision = 0x8;    ///< progress and decisions
inline constexpr std::uint32_t notice = 0x10;     ///< problems while stopping, services loaded
inline constexpr std::uint32_t malformed = 0x100; ///< filter declarations that cannot be taken as they are
inline constexpr std::uint32_t failure = 0x200;   ///< failures with their cause

// Starting and stopping bundles. The first value is the recorded location, not the name; it is empty for a name under
// which nothing was started before.
inline constexpr Message<1> installFailed{decision, {"Unable to install bundle: ", ""}};
inline constexpr Message<2> installFailedCause{failure, {"Unable to install bundle: ", ", cause: ", ""}};
inline constexpr Message<1> installFailedUnknown{failure, {"Unable to install bundle: ", ", unknown error"}};
inline constexpr Message<1> invalidBundle{notice, {"Invalid bundle: ", ""}};
// KEPT ON PURPOSE: "stoping". The spelling is what hosts search their logs for.
inline constexpr Message<2> stopFailedCause{notice, {"Error while stoping ", ": ", ""}};
inline constexpr Message<1> stopFailedUnknown{notice, {"Unknown error while stoping ", ""}};
inline constexpr Message<1> didNotStop{notice, {"Did not stop ", ""}};

// Loading and unloading services. The value is the name given to the operation.
inline constexpr Message<1> loadedServices{notice, {"Loaded services with name: '", "'"}};
inline constexpr Message<1> unloadFailed{failure, {"Error while unloading service ", ""}};

// Filter evaluation. The first value is the subject's name, the second the declaration as JSON.
inline constexpr Message<2> filters{decision, {"", ": filters: ", ""}};
inline constexpr Message<1> invalidFilter{malformed, {"", ": invalid filter, skipping it."}};
inline constexpr Message<1> filterMatches{decision, {"", ": filter does match"}};
inline constexpr Message<1> filterDoesNotMatch{decision, {"", ": filter does not match"}};
inline constexpr Message<2> unexpectedFilters{malformed, {"", ": unexpected type for filters: ", ""}};
inline constexpr Message<1> emptyFilterLacksRequired{decision, {"", ": empty filter is missing required attribute"}};
inline constexpr Message<1> emptyFilterMatches{decision, {"", ": empty filter does match"}};
inline constexpr Message<1> filterError{malformed, {"", ": error checking ostrelFilters from bundle"}};

// Filtered start and load. The value is the component name, or the service's id.
inline constexpr Message<1> skippingBundle{decision, {"Skipping bundle due to filtering: ", ""}};
inline constexpr Message<1> startingBundle{decision, {"Starting bundle: ", ""}};
inline constexpr Message<1> skippingService{decision, {"Skipping service: ", ""}};

} // namespace ostrel::us_container::messages
