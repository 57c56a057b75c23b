// Values that the frameworks drop without a word.
#include "unit/bundle_checker/ManifestTable.h"

namespace ostrel::test {
namespace {

ManifestRow row(const char* name, const std::string& addition, const std::vector<std::string>& findings)
{
    return {name, manifestWith(addition), findings, ManifestRow::exceptSchema};
}

} // namespace

std::vector<ManifestRow> droppedRows()
{
    return {
        row("null", R"(, "a" : null)", {R"(3:56: warning: key "a": the framework drops null)"}),
        row("null_in_array", R"(, "a" : [1, [null]])", {R"(3:61: warning: key "a[1][0]": the framework drops null)"}),
        row("integer_too_big", R"(, "a" : 2147483648)",
            {R"(3:56: warning: key "a": the framework drops the integer 2147483648, which does not fit 32 bits)"}),
        row("integer_too_small", R"(, "a" : {"b" : -2147483649})",
            {R"(3:63: warning: key "a.b": the framework drops the integer -2147483649, which does not fit 32 bits)"}),
        row("integer_of_64_bits", R"(, "a" : 18446744073709551615)",
            {R"(3:56: warning: key "a": the framework drops the integer 18446744073709551615, which does not fit 32 bits)"}),
        {"integer_beyond_64_bits", manifestWith(R"(, "a" : 18446744073709551616)"), {}},
        row("repeated_key", R"(, "a" : {"b" : 1, "b" : 2})",
            {R"(3:66: warning: key "a.b": the framework drops this value, for the key stands already as "b")"}),
        row("repeated_key_in_another_case", ", \"Mode\" : 1,\n \"mode\" : 2",
            {R"(4:2: warning: key "mode": the framework drops this value, for the key stands already as "Mode")"}),
        row("repeated_key_by_escape", R"(, "a" : 1, "\u0061" : 2)",
            {R"(3:59: warning: key "a": the framework drops this value, for the key stands already as "a")"}),
        row("repeated_key_behind_null", R"(, "a" : null, "a" : 1)",
            {R"(3:56: warning: key "a": the framework drops null)"}),
        row("null_behind_a_key", R"(, "a" : 1, "a" : null)", {R"(3:65: warning: key "a": the framework drops null)"}),
        row("three_of_one_key", R"(, "a" : 1, "a" : 2, "A" : 3)",
            {R"(3:59: warning: key "a": the framework drops this value, for the key stands already as "a")",
             R"(3:68: warning: key "A": the framework drops this value, for the key stands already as "a")"}),
        row("nothing_more_is_said_of_what_is_dropped", R"(, "a" : 1, "a" : {"b" : null})",
            {R"(3:59: warning: key "a": the framework drops this value, for the key stands already as "a")"}),
        {"keys_alike_but_for_letters_beyond_ascii", manifestWith(R"(, "é" : 1, "É" : 2)"), {}},
        {"name_repeated",
         "{\"bundle.symbolic_name\":\"alpha\",\n\"bundle.symbolic_name\":\"beta\",\"zq\":{\"component\":{\"name\":"
         "\"a\"}}}",
         {R"(2:1: warning: key "bundle.symbolic_name": the framework drops this value, for the key stands already as "bundle.symbolic_name")"},
         ManifestRow::exceptSchema},
        {"long_path",
         manifestWith(", \"" + std::string(300, 'k') + "\" : null"),
         {R"(3:355: warning: key "kkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkk…": the framework drops null)"},
         ManifestRow::exceptSchema},
    };
}

} // namespace ostrel::test
