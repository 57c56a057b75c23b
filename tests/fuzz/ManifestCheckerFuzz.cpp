// Any bytes as a manifest to be checked. What is found lies in the text and is said in one harmless line each; the text
// has a fault of syntax for the checker when the framework cannot parse it, and only then; and a manifest without
// errors is one that the framework takes.
#include "bundle/Manifest.h"
#include "bundle_checker/LibraryCheck.h"
#include "bundle_checker/ManifestCheck.h"
#include "bundle_checker/Report.h"
#include "fuzz/FuzzTarget.h"
#include "text/Utf8.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

using namespace cppmicroservices;
using namespace ostrel::bundle_checker;
using ostrel::fuzz::require;

namespace {

std::optional<AnyMap> read(const std::string& text)
{
    try {
        return detail::core::parseManifest(text, "N", "/l");
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

bool isTaken(const AnyMap& manifest)
{
    try {
        detail::core::checkManifest(manifest, "N", "/l");
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

/// The name that the manifest itself gives, so that it is not always another than that of the call.
std::string nameOf(const AnyMap& manifest)
{
    const auto found = manifest.find("bundle.symbolic_name");
    const auto* const text = found == manifest.cend() ? nullptr : any_cast<std::string>(&found->second);
    return text != nullptr ? *text : "N";
}

bool isSyntaxFault(const Finding& finding)
{
    return finding.severity == Severity::error && finding.text.rfind("invalid JSON: ", 0) == 0;
}

bool hasErrors(const Findings& findings)
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::error; });
}

/// UTF-8 without control characters of one byte or two.
bool isHarmless(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = ostrel::text::characterLength(text);
        const auto first = static_cast<unsigned char>(text.front());
        if (length == 0 || first < 0x20 || first == 0x7f ||
            (first == 0xc2 && static_cast<unsigned char>(text[1]) < 0xa0)) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

void checkFindings(const std::string& text, const Findings& findings)
{
    std::size_t last = 0;
    for (const Finding& finding : findings) {
        require(finding.offset >= last && finding.offset <= text.size(), "places lie in the text, in its order");
        last = finding.offset;
        require(!finding.text.empty() && isHarmless(finding.text), "a finding is said in one harmless line");
    }
    std::ostringstream lenient;
    std::ostringstream strict;
    require(writeFindings(lenient, "manifest.json", text, findings, Strictness::lenient) == hasErrors(findings),
            "errors are a failure");
    require(writeFindings(strict, "manifest.json", text, findings, Strictness::strict) == !findings.empty(),
            "whatever is found is a strict failure");
    const std::string lines = lenient.str();
    require(std::count(lines.begin(), lines.end(), '\n') == static_cast<std::ptrdiff_t>(findings.size()),
            "each finding has its line");
}

void checkActivators(const std::string& text, const std::optional<AnyMap>& manifest)
{
    const bool asked = manifest && detail::core::asksForActivator(*manifest);
    const Findings without = checkActivator(text, "N", "lib", {});
    const Findings with = checkActivator(text, "N", "lib", {"N"});
    require(hasErrors(without) == asked && !hasErrors(with), "an activator that is asked for must be there");
    require(with.empty() == (asked || !manifest), "one that is there should be asked for");
    checkFindings(text, without);
    checkFindings(text, with);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text{ostrel::fuzz::textOf(data, size)};
    const auto manifest = read(text);
    const Findings findings = checkManifest(text, manifest ? nameOf(*manifest) : "N");
    checkFindings(text, findings);
    require(std::any_of(findings.begin(), findings.end(), isSyntaxFault) == !manifest,
            "the checker and the framework have one syntax");
    require(hasErrors(findings) || isTaken(*manifest), "what has no errors is taken");
    checkActivators(text, manifest);
    return 0;
}
