// The filters of a component.
#include "unit/bundle_checker/ManifestTable.h"

namespace ostrel::test {
namespace {

ManifestRow row(const char* name, const std::string& filters, const std::vector<std::string>& findings,
                ManifestRow::Agreement agreement = ManifestRow::all)
{
    return {name, manifestWithFilters(filters), findings, agreement};
}

} // namespace

std::vector<ManifestRow> filterRows()
{
    return {
        row("good_filters", R"([{"mode" : "fast", "size" : 3}, {}, {"on" : true, "part" : 0.5}])", {}),
        row("filters_object", R"({"a" : 1})",
            {R"(5:23: warning: key "zq.ostrelFilters" must be an array of objects, not an object; nobody looks into it, and the bundle is admitted unless the host requires an attribute)"}),
        row("filters_text", R"("a")",
            {R"(5:23: warning: key "zq.ostrelFilters" must be an array of objects, not a string; nobody looks into it, and the bundle is admitted unless the host requires an attribute)"}),
        row("filters_integer", "5",
            {R"(5:23: warning: key "zq.ostrelFilters" must be an array of objects, not an integer; nobody looks into it, and the bundle is admitted unless the host requires an attribute)"}),
        row("filters_number", "5.5",
            {R"(5:23: warning: key "zq.ostrelFilters" must be an array of objects, not a number; nobody looks into it, and the bundle is admitted unless the host requires an attribute)"}),
        row("filters_boolean", "true",
            {R"(5:23: warning: key "zq.ostrelFilters" must be an array of objects, not a boolean; nobody looks into it, and the bundle is admitted unless the host requires an attribute)"}),
        row("filters_null", "null", {R"(5:23: warning: key "zq.ostrelFilters": the framework drops null)"}),
        row("filters_empty", "[]",
            {R"(5:23: warning: key "zq.ostrelFilters" is an empty array, so that no conditions ever admit the bundle; leave the key out to have it admitted by all hosts that require nothing)"}),
        row("filters_of_text", R"(["fast", "slow"])",
            {R"(5:23: warning: key "zq.ostrelFilters" holds no object, so that no conditions ever admit the bundle; leave the key out to have it admitted by all hosts that require nothing)",
             R"(5:24: warning: key "zq.ostrelFilters[0]" must be an object, not a string; it is skipped)",
             R"(5:32: warning: key "zq.ostrelFilters[1]" must be an object, not a string; it is skipped)"}),
        row("filters_of_null", "[null]",
            {R"(5:23: warning: key "zq.ostrelFilters" holds no object, so that no conditions ever admit the bundle; leave the key out to have it admitted by all hosts that require nothing)",
             R"(5:24: warning: key "zq.ostrelFilters[0]": the framework drops null)"}),
        row("filters_mixed", R"([{"a" : 1}, "x", null, [{}], 2147483648])",
            {R"(5:35: warning: key "zq.ostrelFilters[1]" must be an object, not a string; it is skipped)",
             R"(5:40: warning: key "zq.ostrelFilters[2]": the framework drops null)",
             R"(5:46: warning: key "zq.ostrelFilters[3]" must be an object, not an array; it is skipped)",
             R"(5:52: warning: key "zq.ostrelFilters[4]": the framework drops the integer 2147483648, which does not fit 32 bits)"}),
        row("filters_deep", R"([{"a" : [1, 2]}, {"b" : {"c" : 1}}])",
            {R"(5:31: warning: key "zq.ostrelFilters[0].a" should be a plain value, not an array; its printed text as a whole is compared, not what is in it)",
             R"(5:47: warning: key "zq.ostrelFilters[1].b" should be a plain value, not an object; its printed text as a whole is compared, not what is in it)"}),
        row("filters_with_dropped_value", R"([{"a" : null, "b" : 1}])",
            {R"(5:31: warning: key "zq.ostrelFilters[0].a": the framework drops null)"}),
        {"filters_in_another_case",
         R"({"bundle.symbolic_name":"alpha","ZQ":{"Component":{"Name":"a"},"OSTRELFILTERS":{"a":1}}})",
         {R"(1:80: warning: key "ZQ.OSTRELFILTERS" must be an array of objects, not an object; nobody looks into it, and the bundle is admitted unless the host requires an attribute)"}},
    };
}

} // namespace ostrel::test
