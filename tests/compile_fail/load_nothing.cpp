// Empty braces are no names or no conditions.
// Error: (call of overloaded|call to member function) 'loadServices.* is ambiguous
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    container.loadServices(ostrel::us_container::FilterMap{});
#else
    container.loadServices({});
#endif
}
