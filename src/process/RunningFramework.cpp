#include "process/RunningFramework.h"

#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <string_view>

namespace ostrel::process {
namespace {

using bundle_reader::Framework;
using bundle_reader::frameworkNamed;

Framework frameworkAt(const char* path)
{
    const std::string_view whole{path != nullptr ? path : ""};
    return frameworkNamed(whole.substr(whole.rfind('/') + 1));
}

/// Where the code of a member function begins that is not virtual.
const void* addressOf(cppmicroservices::Framework (cppmicroservices::FrameworkFactory::*function)())
{
    const void* address = nullptr;
    static_assert(sizeof function >= sizeof address);
    std::memcpy(&address, &function, sizeof address);
    return address;
}

int takeFirst(dl_phdr_info* library, std::size_t /*size*/, void* found)
{
    auto& framework = *static_cast<Framework*>(found);
    framework = frameworkAt(library->dlpi_name);
    return static_cast<int>(framework != Framework::none);
}

Framework look()
{
    Dl_info holder{};
    if (::dladdr(addressOf(&cppmicroservices::FrameworkFactory::NewFramework), &holder) != 0) {
        const Framework framework = frameworkAt(holder.dli_fname);
        if (framework != Framework::none) {
            return framework;
        }
    }
    // A program at a fixed address has one of its own for a function whose address it takes, and gives it to all
    // libraries. Libraries come in the order in which their functions are looked up.
    Framework framework = Framework::none;
    ::dl_iterate_phdr(takeFirst, &framework);
    return framework;
}

} // namespace

Framework runningFramework() noexcept
{
    static const Framework framework = look();
    return framework;
}

} // namespace ostrel::process
