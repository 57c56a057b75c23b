// A record with fewer values than its message has gaps.
// Error: a message takes exactly as many values as it has gaps
#include "container/Record.h"

#include <string>

void use(const std::string& value)
{
#ifdef OSTREL_CORRECTED
    OSTREL_RECORD(ostrel::us_container::messages::stopFailedCause, value, value);
#else
    OSTREL_RECORD(ostrel::us_container::messages::stopFailedCause, value);
#endif
}
