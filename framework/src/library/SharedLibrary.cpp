#include "library/SharedLibrary.h"

#include <dlfcn.h>

namespace cppmicroservices::detail::core {

SharedLibrary::SharedLibrary(std::string const& path, int options)
{
    // A name without a slash would be searched for in the system's folders instead of being opened as it is.
    bool const bare = path.find('/') == std::string::npos;
    keep(dlopen((bare ? "./" + path : path).c_str(), options));
}

SharedLibrary SharedLibrary::ofProgram(int options)
{
    SharedLibrary program;
    program.keep(dlopen(nullptr, options));
    return program;
}

void SharedLibrary::keep(void* handle)
{
    m_handle = handle;
    if (m_handle == nullptr) {
        char const* const reason = dlerror();
        throw LoadError(reason != nullptr ? reason : "unknown error of the dynamic loader");
    }
}

void* SharedLibrary::symbol(std::string const& name) const
{
    return dlsym(m_handle, name.c_str());
}

} // namespace cppmicroservices::detail::core
