#include "value/Reason.h"

namespace cppmicroservices::detail::core {

std::string reasonOf(std::exception_ptr const& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (std::exception const& e) {
        return e.what();
    } catch (...) {
        return "unknown";
    }
}

} // namespace cppmicroservices::detail::core
