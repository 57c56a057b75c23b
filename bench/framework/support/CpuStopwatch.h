#pragma once

#include <ctime>

namespace bench {

/// Seconds of processor time that the calling thread spent, so that other programs on the machine count less.
inline double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// How long `work` takes the calling thread, for each of the `count` operations that it does.
///
/// Reading the clock costs a fraction of a microsecond, so `work` should do several operations.
template <typename Work>
double secondsEach(int count, Work work)
{
    double const begin = threadSeconds();
    work();
    return (threadSeconds() - begin) / count;
}

} // namespace bench
