#undef US_BUNDLE_NAME
#define US_BUNDLE_NAME two_bundles_second

#include "bundles/shared/ScriptedActivator.h"

namespace {

class Second final : public ostrel::test::ScriptedActivator {
public:
    Second() : ScriptedActivator("two_bundles_second") {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Second)
