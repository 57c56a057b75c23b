#include "contract/traces/Subjects.h"

#include <cppmicroservices/BundleVersion.h>

#include <sstream>
#include <vector>

namespace contract {

using cppmicroservices::BundleVersion;

namespace {

std::string randomVersion(Choices& choices)
{
    static std::vector<std::string> const known{"",           " ",           "1",
                                                "1.0",        "1.0.0",       "1.2.3.beta",
                                                "01.02.03",   "7.1",         "1..2",
                                                "-1",         "1.2.3.4.5",   "a.b",
                                                "1.2.3.a b",  "1.2.3.",      ".",
                                                "1.",         ".1",          "1.2.3.-_Z9",
                                                "+1",         "1.x",         "4294967295",
                                                "4294967296", "99999999999", "0x10",
                                                "1 .2",       "\t3.4\n",     "1.2.3.b\xc3\xa4",
                                                "1,2",        "1.2.3.A",     "1.2.3.a",
                                                "2147483648", "1.-2.3",      "1.2.3 ",
                                                " 1.2",       "undefined"};
    return choices.chance(55) ? choices.of(known) : choices.text("0123.9.-a _", 9);
}

std::string described(BundleVersion const& version)
{
    std::ostringstream text;
    text << version << (version.IsUndefined() ? " undefined" : " defined");
    return text.str() + " " + version.ToString();
}

} // namespace

void traceVersions(Choices& choices, Trace& trace, std::size_t steps)
{
    std::vector<BundleVersion> all{BundleVersion::EmptyVersion(), BundleVersion::UndefinedVersion()};
    for (; steps > 0; --steps) {
        auto const text = randomVersion(choices);
        switch (choices.below(8)) {
        case 0:
            trace.call("ParseVersion(" + text + ")", [&] {
                auto const& made = all.emplace_back(BundleVersion::ParseVersion(text));
                return described(made);
            });
            break;
        case 1:
        case 2:
            trace.call("BundleVersion(" + text + ")", [&] {
                auto const& made = all.emplace_back(text);
                return described(made);
            });
            break;
        case 3: {
            auto const major = static_cast<unsigned>(choices.below(3));
            auto const minor = static_cast<unsigned>(choices.below(3));
            auto const micro = static_cast<unsigned>(choices.below(3));
            auto const qualifier = choices.text("abZ_-9. ", 3);
            if (choices.chance(50)) {
                trace.line("three numbers: " + described(all.emplace_back(major, minor, micro)));
            } else {
                trace.call("with qualifier '" + qualifier + "'", [&] {
                    auto const& made = all.emplace_back(major, minor, micro, qualifier);
                    return described(made);
                });
            }
            break;
        }
        case 4: {
            auto const& version = choices.of(all);
            trace.call("parts of " + version.ToString(), [&] {
                std::ostringstream parts;
                parts << version.GetMajor() << '|' << version.GetMinor() << '|' << version.GetMicro() << '|'
                      << version.GetQualifier();
                return parts.str();
            });
            trace.call("qualifier", [&] { return version.GetQualifier(); });
            break;
        }
        default: {
            auto const& left = choices.of(all);
            auto const& right = choices.of(all);
            auto const both = left.ToString() + " and " + right.ToString();
            trace.call("compare " + both, [&] {
                auto const order = left.Compare(right);
                return std::string(order < 0 ? "less" : order > 0 ? "greater" : "equal");
            });
            trace.call("equal " + both, [&] { return std::to_string(left == right); });
        }
        }
    }
}

} // namespace contract
