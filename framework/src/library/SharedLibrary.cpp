#include "library/SharedLibrary.h"

#include <dlfcn.h>

namespace cppmicroservices::core {

SharedLibrary::SharedLibrary(std::string const& path, int options)
{
    // A name without a slash would be searched for in the system's folders instead of being opened as it is.
    bool const bare = path.find('/') == std::string::npos;
    m_handle = dlopen((bare ? "./" + path : path).c_str(), options);
    if (m_handle == nullptr) {
        char const* const reason = dlerror();
        throw LoadError(reason != nullptr ? reason : "unknown error of the dynamic loader");
    }
}

void* SharedLibrary::symbol(std::string const& name) const
{
    return dlsym(m_handle, name.c_str());
}

} // namespace cppmicroservices::core
