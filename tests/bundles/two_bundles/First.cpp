#undef US_BUNDLE_NAME
#define US_BUNDLE_NAME two_bundles_first

#include "bundles/shared/ScriptedActivator.h"

namespace {

class First final : public ostrel::test::ScriptedActivator {
public:
    First() : ScriptedActivator("two_bundles_first") {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(First)
