// One condition in braces is a map of one, or the begin and the end of a list.
// Error: (call of overloaded|call to member function) 'loadServices.* is ambiguous
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    container.loadServices(ostrel::us_container::FilterMap{{"mode", {"night", true}}});
#else
    container.loadServices({{"mode", {"night", true}}});
#endif
}
