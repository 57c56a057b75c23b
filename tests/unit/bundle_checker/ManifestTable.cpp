#include "unit/bundle_checker/ManifestTable.h"

namespace ostrel::test {

std::ostream& operator<<(std::ostream& out, const ManifestGroup& group)
{
    return out << group.name;
}

std::string manifestWith(const std::string& addition)
{
    return R"({
  "bundle.symbolic_name" : "alpha",
  "zq" : { "component" : { "name" : "alpha" } })" +
           addition + R"(
}
)";
}

std::string manifestWithFilters(const std::string& filters)
{
    return R"({
  "bundle.symbolic_name" : "alpha",
  "zq" : {
    "component" : { "name" : "alpha" },
    "ostrelFilters" : )" +
           filters + R"(
  }
}
)";
}

std::string manifestWithVersion(const std::string& version)
{
    return R"({"bundle.symbolic_name":"alpha", "bundle.version" : )" + version + R"(,
"zq":{"component":{"name":"alpha"}}})";
}

} // namespace ostrel::test
