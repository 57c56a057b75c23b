// Empty braces are no names or no conditions.
// Error: (call of overloaded|call to member function) 'startBundles.* is ambiguous
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    container.startBundles(ostrel::us_container::FilterMap{});
#else
    container.startBundles({});
#endif
}
