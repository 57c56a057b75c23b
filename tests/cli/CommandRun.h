#pragma once

#include "cli/FaultRun.h"

#include <string>
#include <vector>

namespace ostrel::test {

/// Runs any command of the host over the directory; its path is shown as "<bundles>".
class CommandRun : public FaultRun {
protected:
    ProgramResult command(const std::string& name, const std::vector<std::string>& options = {},
                          const Surroundings& surroundings = {}) const
    {
        std::vector<std::string> arguments{name, directory.path()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        ProgramResult result = runHost(arguments, surroundings);
        result.out = withoutPath(result.out, directory.path());
        result.err = withoutPath(result.err, directory.path());
        return result;
    }

    /// Writes a bundle without code, in NAME.zip, that declares these filters in JSON; without any when they are "".
    void write(const std::string& name, const std::string& filters = "", const std::string& version = "1.0.0") const;

    std::string path(const std::string& fileName) const { return directory.path() / fileName; }
};

} // namespace ostrel::test
