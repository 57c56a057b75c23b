// Two strings in braces are names, or the begin and the end of conditions.
// Error: (call of overloaded|call to member function) 'startBundles.* is ambiguous
#include "container/MicroServicesContainer.h"

void use(ostrel::us_container::MicroServicesContainer& container, const std::string& first, const std::string& second)
{
#ifdef OSTREL_CORRECTED
    container.startBundles(std::vector<std::string>{first, second});
#else
    container.startBundles({first, second});
#endif
}
