#include "cli/CommandRun.h"

#include "cli/ZipBundle.h"

namespace ostrel::test {

void CommandRun::write(const std::string& name, const std::string& filters, const std::string& version) const
{
    directory.write(name + ".zip",
                    zipBundle(name, R"({"bundle.symbolic_name": ")" + name + R"(", "bundle.version": ")" + version +
                                        R"(", "zq": {"component": {"name": "component.)" + name + "\"}" +
                                        (filters.empty() ? "" : ", \"ostrelFilters\": " + filters) + "}}"));
}

} // namespace ostrel::test
