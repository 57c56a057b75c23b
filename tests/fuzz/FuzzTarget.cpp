#include "fuzz/FuzzTarget.h"

#include <cstdio>
#include <cstdlib>

namespace ostrel::fuzz {

void require(bool holds, const char* rule)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", rule);
        std::abort();
    }
}

} // namespace ostrel::fuzz
