#pragma once

#include "frame/Problem.h"
#include "hosting/InstalledBundles.h"

#include <exception>
#include <string>

namespace ostrel::host {

/// Runs one step in which code of bundles takes part.
///
/// @param what  is said when it throws
/// @throws Problem (bundle) for whatever the step throws
template <typename Step>
void guarded(const InstalledBundles& bundles, const std::string& directory, const std::string& what, Step step)
{
    const std::string remedy = "repair the bundle, take it out of the directory, or refuse it by other conditions";
    try {
        step();
    } catch (const Problem&) {
        throw;
    } catch (const std::exception& error) {
        throw Problem{ExitStatus::bundle, {what, bundles.culpritFile(error.what(), directory), {error.what()}, remedy}};
    } catch (...) {
        throw Problem{ExitStatus::bundle,
                      {what, directory, {"a bundle threw something that is no std::exception"}, remedy}};
    }
}

} // namespace ostrel::host
