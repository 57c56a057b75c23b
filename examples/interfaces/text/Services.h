#pragma once

#include <cstddef>
#include <string>

/// The services of the text-polishing example. Bundles and host share this header and nothing else.
///
/// Interfaces have virtual members only, so that a bundle needs nothing of the library that implements one. All texts
/// are UTF-8. All operations may be called from any thread.
namespace text {

/// One step of the polish, such as tidying the blanks.
///
/// Each service has a `service.ranking`, and the steps are applied from the highest to the lowest.
class Step {
public:
    virtual ~Step() = default;
    virtual std::string apply(const std::string& text) const = 0;
};

/// All steps that are registered at the moment of the call, one after the other.
class Pipeline {
public:
    virtual ~Pipeline() = default;
    virtual std::string polish(const std::string& text) const = 0;
};

struct Counts {
    std::size_t lines;
    std::size_t words;
    std::size_t bytes;
};

/// Counts what a text holds.
class Statistics {
public:
    virtual ~Statistics() = default;
    virtual Counts count(const std::string& text) const = 0;
};

} // namespace text
