#include "support/TestBundles.h"

#include <stdexcept>
#include <unordered_map>

namespace ostrel::test {

std::filesystem::path testBundle(const std::string& target)
{
    static const std::unordered_map<std::string, std::string> files{
#include "TestBundles.inc"
    };
    const auto found = files.find(target);
    if (found == files.end()) {
        throw std::invalid_argument{"no target of tests/bundles is called '" + target + "'"};
    }
    return found->second;
}

} // namespace ostrel::test
