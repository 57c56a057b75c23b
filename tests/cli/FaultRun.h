#pragma once

#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrel::test {

/// Runs the host over bundles of tests/cli/faults; the path of their directory is shown as "<bundles>".
class FaultRun : public testing::Test {
protected:
    /// Copies the bundle into the directory, as NAME.so.
    void add(const std::string& name) const { add(name, name + ".so"); }
    void add(const std::string& name, const std::string& fileName) const
    {
        std::filesystem::copy_file(std::filesystem::path{OSTREL_TEST_FAULTS} / (name + ".so"),
                                   directory.path() / fileName);
    }

    ProgramResult run(std::vector<std::string> options = {}, const Surroundings& surroundings = {}) const
    {
        options.insert(options.begin(), {"run", directory.path()});
        ProgramResult result = runHost(options, surroundings);
        result.out = withoutPath(result.out, directory.path());
        result.err = withoutPath(result.err, directory.path());
        return result;
    }

    /// The same over one bundle.
    ProgramResult runWith(const std::string& name, const std::vector<std::string>& options = {}) const
    {
        add(name);
        return run(options);
    }

    const TemporaryDirectory directory;
};

} // namespace ostrel::test
