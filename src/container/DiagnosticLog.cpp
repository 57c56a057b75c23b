#include "container/DiagnosticLog.h"

namespace ostrel::us_container {

namespace {

// At namespace scope, not in the function: the source exists before any host code runs and goes at exit.
ostrel::platform::DiagnosticLogger logSource{"ostrel::us_container"};

} // namespace

ostrel::platform::DiagnosticLogger& diagnosticLog()
{
    return logSource;
}

} // namespace ostrel::us_container
