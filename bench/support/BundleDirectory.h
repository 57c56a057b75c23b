#pragma once

#include "support/TemporaryDirectory.h"

#include <string>
#include <vector>

namespace bench {

/// A directory of bundle files, each with one bundle that has a component name and no activator: what a start costs is
/// then what finding, reading and installing cost.
class BundleDirectory {
public:
    explicit BundleDirectory(int count);

    std::string path() const { return m_directory.path().string(); }
    /// The names of the files, which are the component names as well, in ascending byte order.
    const std::vector<std::string>& names() const { return m_names; }
    /// The same files with their whole paths.
    const std::vector<std::string>& files() const { return m_files; }

private:
    ostrel::test::TemporaryDirectory m_directory;
    std::vector<std::string> m_names;
    std::vector<std::string> m_files;
};

/// A directory of so many bundles; who asks for the same number again gets the same.
const BundleDirectory& directoryOf(int count);

} // namespace bench
