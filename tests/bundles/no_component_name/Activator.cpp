#include "bundles/shared/ScriptedActivator.h"

namespace {

class NoComponentName final : public ostrel::test::ScriptedActivator {
public:
    NoComponentName() : ScriptedActivator("no_component_name") {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(NoComponentName)
