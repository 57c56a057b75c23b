// The key "zq" and its component.
#include "unit/bundle_checker/ManifestTable.h"

namespace ostrel::test {
namespace {

ManifestRow row(const char* name, const std::string& rest, const std::vector<std::string>& findings,
                ManifestRow::Agreement agreement = ManifestRow::all)
{
    return {name, "{\"bundle.symbolic_name\":\"alpha\"" + rest + "}", findings, agreement};
}

} // namespace

std::vector<ManifestRow> componentRows()
{
    return {
        row("component_missing", "",
            {R"(1:1: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)"}),
        row("component_missing_in_zq", ",\n\"zq\":{}",
            {R"(2:6: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)"}),
        row("component_without_name", ",\n\"zq\":{\"component\":{}}",
            {R"(2:19: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)"}),
        row("component_flat", ",\n\"zq.component.name\":\"alpha\"",
            {R"(2:1: warning: key "zq.component.name" is never found, for it is one key with dots; write {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)"}),
        row("component_flat_besides", ",\n\"zq.component.name\":\"alpha\",\"zq\":{\"component\":{\"name\":\"alpha\"}}",
            {R"(2:1: warning: key "zq.component.name" is never found, for it is one key with dots; write {"zq": {"component": {"name": "…"}}})"}),
        row("component_less_flat", ",\n\"zq.component\":{\"name\":\"alpha\"}",
            {R"(2:1: warning: key "zq.component" is never found, for it is one key with dots; write {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)"}),
        row("component_half_flat", ",\n\"zq\":{\"component.name\":\"alpha\"}",
            {R"(2:6: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)",
             R"(2:7: warning: unknown key "component.name" in "zq", which nobody looks at, for it is one key with dots; write nested objects)"}),
        row("component_no_object", ",\n\"zq\":{\"component\":\"alpha\"}",
            {R"(2:19: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}} ("zq.component" is a string); a start by directory and conditions fails at this bundle)"}),
        row("component_in_array", ",\n\"zq\":[{\"component\":{\"name\":\"a\"}}]",
            {R"(2:6: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}} ("zq" is an array); a start by directory and conditions fails at this bundle)"}),
        row("component_dropped", ",\n\"zq\":{\"component\":{\"name\":null}}",
            {R"(2:19: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)",
             R"(2:27: warning: key "zq.component.name": the framework drops null)"}),
        row("component_hidden", ",\n\"zq\":{},\n\"ZQ\":{\"component\":{\"name\":\"alpha\"}}",
            {R"(2:6: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)",
             R"(3:1: warning: key "ZQ": the framework drops this value, for the key stands already as "zq")"}),
        row("component_behind_a_dropped_one", ",\n\"zq\":null,\n\"ZQ\":{\"component\":{\"name\":\"alpha\"}}",
            {R"(2:6: warning: key "zq": the framework drops null)"}),
        row("component_name_empty", ",\n\"zq\":{\"component\":{\"name\":\"\"}}",
            {R"(2:27: warning: key "zq.component.name" is empty; the container remembers the bundle under this name, and finds no file of that name when it reloads)"}),
        row("component_name_a_percent_sign", ",\n\"zq\":{\"component\":{\"name\":\"%\"}}",
            {R"(2:27: warning: key "zq.component.name" is empty; the container remembers the bundle under this name, and finds no file of that name when it reloads)"}),
        row("component_name_a_number", ",\n\"zq\":{\"component\":{\"name\":7}}",
            {R"(2:27: warning: key "zq.component.name" should be a string, not an integer; its printed text is the name)"}),
        row("component_name_an_object", ",\n\"zq\":{\"component\":{\"name\":{\"a\":1}}}",
            {R"(2:27: warning: key "zq.component.name" should be a string, not an object; its printed text is the name)"}),
        row("zq_is_text", ",\n\"zq\":\"alpha\"",
            {R"(2:6: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}} ("zq" is a string); a start by directory and conditions fails at this bundle)"}),
        row("zq_is_null", ",\n\"zq\":null",
            {R"(1:1: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)",
             R"(2:6: warning: key "zq": the framework drops null)"}),
        row("misspelt_component", ",\n\"zq\":{\"componnet\":{\"name\":\"alpha\"}}",
            {R"(2:6: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)",
             R"(2:7: warning: unknown key "componnet" in "zq": did you mean "component"?)"}),
        row("misspelt_component_name", ",\n\"zq\":{\"component\":{\"nmae\":\"alpha\"}}",
            {R"(2:19: warning: key "zq.component.name" is not there as nested objects, {"zq": {"component": {"name": "…"}}}; a start by directory and conditions fails at this bundle)",
             R"(2:20: warning: unknown key "nmae" in "zq.component": did you mean "name"?)"}),
        row("unknown_in_component", ",\n\"zq\":{\"component\":{\"name\":\"alpha\",\"version\":\"1\"}}",
            {R"(2:35: warning: unknown key "version" in "zq.component", which nobody looks at; known are "name")"}),
        row("misspelt_filters", ",\n\"zq\":{\"component\":{\"name\":\"alpha\"},\"ostrelFilter\":[{}]}",
            {R"(2:36: warning: unknown key "ostrelFilter" in "zq": did you mean "ostrelFilters"?)"}),
        row("unknown_in_zq", ",\n\"zq\":{\"component\":{\"name\":\"alpha\"},\"colour\":1}",
            {R"(2:36: warning: unknown key "colour" in "zq", which nobody looks at; known are "component" and "ostrelFilters")"}),
        row("unknown_in_zq_in_another_case", ",\n\"ZQ\":{\"Component\":{\"NAME\":\"alpha\"},\"OSTRELFILTR\":[{}]}",
            {R"(2:36: warning: unknown key "OSTRELFILTR" in "ZQ": did you mean "ostrelFilters"?)"}),
        row("filters_flat", ",\n\"zq\":{\"component\":{\"name\":\"alpha\"}},\"zq.ostrelFilters\":[{\"a\":1}]",
            {R"(2:37: warning: key "zq.ostrelFilters" is never found, for it is one key with dots; write {"zq": {"ostrelFilters": […]}})"}),
        row("control_characters_in_a_key", ",\n\"zq\":{\"component\":{\"name\":\"alpha\"},\"a\\u0007\\u009b\\n\":1}",
            {R"(2:36: warning: unknown key "a\x07\xC2\x9B\n" in "zq", which nobody looks at; known are "component" and "ostrelFilters")"}),
        row("other_keys_with_dots", ",\n\"zq\":{\"component\":{\"name\":\"alpha\"}},\"zq.own\":1,\"zqx\":{\"name\":1}",
            {}),
    };
}

} // namespace ostrel::test
