// Two texts in braces are names, or the begin and the end of conditions.
// Error: (call of overloaded|call to member function) 'loadServices.* is ambiguous
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    container.loadServices(std::vector<std::string>{"one", "two"});
#else
    container.loadServices({"one", "two"});
#endif
}
