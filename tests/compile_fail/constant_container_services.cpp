// Of the console reports, that on an interface alone is not for constant containers.
// Error: ('this' argument to member function 'printServiceProperties'|as 'this' argument discards qualifiers)
#include "container/MicroServicesContainer.h"

void use(const ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    container.printAllServices();
#else
    container.printServiceProperties("Interface");
#endif
}
