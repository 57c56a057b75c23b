#include "StartProblem.h"

#include <inspection/StartFailure.h>

namespace ostrel::host {

Problem::Text startProblem(const FrameworkHost& host, const std::string& message)
{
    const std::string file = host.culprit(message);
    for (const cppmicroservices::Bundle& bundle : host.bundles()) {
        if (bundle.GetLocation() == file) {
            const inspection::StartFailure failure = inspection::startFailure(message);
            return {"the bundle " + bundle.GetSymbolicName() + " did not start: " + failure.what,
                    file,
                    {failure.why},
                    failure.remedy,
                    failure.code};
        }
    }
    return {"the bundles cannot be started", file, {message}, "check the bundles of the directory"};
}

} // namespace ostrel::host
