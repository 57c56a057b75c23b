#pragma once

#include "platform/Export.h"
#include "platform/Utf16Path.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <vector>

namespace ostrel::platform {

/// Installs every bundle found at `path`, a directory or a single file, and returns them.
///
/// Of a directory come the bundles of its regular files and of links to such, in ascending byte order of file name and,
/// within a file, of symbolic name; sub-directories are not entered. Content decides, never the suffix: a shared object
/// or a bare zip archive with a bundle manifest is a bundle; a shared object without an archive is skipped; so is any
/// other file, unless its name ends in ".so".
///
/// The location given to the framework is the canonical absolute path, so one file is one bundle by whatever spelling
/// or link. What is installed already is not installed twice but returned as it is; each bundle is returned once. A
/// file that was rewritten with another version, and is installed under another spelling, becomes a bundle of its own.
/// Nothing is started and no code of a bundle runs.
///
/// @param path  with its flag set, u'\\' is read as u'/'. File names in a directory are bytes, UTF-8 or not.
/// @throws      the framework's own error, unchanged, when `context` is not valid; std::bad_alloc when memory fails, so
///              that a further attempt gives what this one should have; else std::runtime_error that names the file and
///              the reason: nothing at the path, unreadable, a single file without bundles, a text file named like a
///              library, a truncated library, a damaged archive, no manifest, a manifest that is not JSON, a bundle
///              built for the other framework, two files with one symbolic name and version (names both), or what the
///              framework says; also when `path` has an unpaired surrogate (with its offset). Bundles installed before
///              the failing file stay installed.
/// @locks       none
/// @cost        of each file that is a shared object or an archive what its kind, its needs and its manifests are known
///              by, however large it is; all else is the framework's. Only when the framework refuses a file does it
///              grow with the number of installed bundles: then each one's file is asked for its status, once a call.
OSTREL_EXPORT std::vector<cppmicroservices::Bundle> installBundles(cppmicroservices::BundleContext context,
                                                                   const Utf16Path& path);

} // namespace ostrel::platform
