// A container cannot be copied: two would undo the same.
// Error: (use of deleted function|call to deleted constructor)
#include "container/MicroServicesContainer.h"

void use(const ostrel::us_container::MicroServicesContainer& container)
{
#ifdef OSTREL_CORRECTED
    const ostrel::us_container::MicroServicesContainer& same{container};
    same.printAllBundles();
#else
    const ostrel::us_container::MicroServicesContainer copy{container};
    copy.printAllBundles();
#endif
}
