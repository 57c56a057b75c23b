#include "integration/support/Scheduling.h"

#include <sched.h>

namespace ostrel::test {

void meetOnFirstProcessor(Urgency urgency)
{
    cpu_set_t allowed;
    ::sched_getaffinity(0, sizeof allowed, &allowed);
    int first = 0;
    while (first < CPU_SETSIZE - 1 && !CPU_ISSET(first, &allowed)) {
        ++first;
    }
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ::sched_setaffinity(0, sizeof one, &one);
    if (urgency == Urgency::patient) {
        const sched_param parameters{};
        ::sched_setscheduler(0, SCHED_IDLE, &parameters);
    }
}

} // namespace ostrel::test
