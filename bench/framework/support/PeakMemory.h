#pragma once

#include <sys/resource.h>

namespace bench {

/// The most memory that the process has had so far, in bytes.
inline long peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

} // namespace bench
