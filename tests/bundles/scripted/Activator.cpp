#include "bundles/shared/ScriptedActivator.h"

namespace {

class Scripted final : public ostrel::test::ScriptedActivator {
public:
    Scripted() : ScriptedActivator(US_STR(US_BUNDLE_NAME)) {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Scripted)
