// Two texts in braces are names, or the begin and the end of conditions.
// Error: (call of overloaded|call to member function) 'startBundles.* is ambiguous
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    container.startBundles(std::vector<std::string>{"one", "two"});
#else
    container.startBundles({"one", "two"});
#endif
}
