#include "bundles/shared/ScriptedActivator.h"

namespace {

class NumberAsComponentName final : public ostrel::test::ScriptedActivator {
public:
    NumberAsComponentName() : ScriptedActivator("number_as_component_name") {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(NumberAsComponentName)
