// A container cannot be assigned.
// Error: (use of deleted function|overload resolution selected deleted operator '=')
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container, ostrel::us_container::MicroServicesContainer& other)
{
#ifdef OSTREL_CORRECTED
    container.unload();
    other.reload();
#else
    container = other;
#endif
}
