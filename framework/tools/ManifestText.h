#pragma once

#include <set>
#include <stdexcept>
#include <string>

/// Manifests that are no valid JSON objects, or cannot be put together; what() says which and why.
class ManifestError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One manifest of several: the top-level keys of all of them, without the comments that a manifest may hold for the
/// resource compiler, though not for the framework.
class ManifestText {
public:
    /// @param source  where the text is from, for messages
    /// @throws ManifestError when the text is no JSON object, or repeats a key that is there already
    void add(const std::string& text, const std::string& source);

    std::string text() const { return "{" + m_members + "\n}\n"; }

    /// @throws ManifestError when the text is no JSON object
    static void check(const std::string& text, const std::string& source);

private:
    std::string m_members;        // in JSON, with commas between them
    std::set<std::string> m_keys; // as they are written in JSON
};
