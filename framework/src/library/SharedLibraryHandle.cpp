#include "cppmicroservices/SharedLibrary.h"

#include <cerrno>
#include <dlfcn.h>
#include <stdexcept>
#include <system_error>

namespace cppmicroservices {

class SharedLibraryPrivate {
public:
    void* handle = nullptr;
    std::string file; // as given; empty when it is made of the parts
    std::string path;
    std::string name;
    std::string prefix = US_LIB_PREFIX;
    std::string suffix = US_LIB_EXT;
};

namespace {

std::string loaderError()
{
    char const* const text = dlerror();
    return text != nullptr ? text : "unknown error of the dynamic loader";
}

void cutPrefix(std::string& name, std::string const& prefix)
{
    if (name.compare(0, prefix.size(), prefix) == 0) {
        name.erase(0, prefix.size());
    }
}

void cutSuffix(std::string& name, std::string const& suffix)
{
    if (name.size() >= suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0) {
        name.resize(name.size() - suffix.size());
    }
}

} // namespace

SharedLibrary::SharedLibrary() : m_private(std::make_shared<SharedLibraryPrivate>()) {}

SharedLibrary::SharedLibrary(SharedLibrary const& other) = default;

SharedLibrary::SharedLibrary(std::string const& libPath, std::string const& name) : SharedLibrary()
{
    m_private->path = libPath;
    m_private->name = name;
}

SharedLibrary::SharedLibrary(std::string const& absoluteFilePath) : SharedLibrary()
{
    SetFilePath(absoluteFilePath);
}

SharedLibrary::~SharedLibrary() = default;

SharedLibrary& SharedLibrary::operator=(SharedLibrary const& other) = default;

void SharedLibrary::Load()
{
    Load(RTLD_LAZY | RTLD_LOCAL);
}

void SharedLibrary::Load(int flags)
{
    auto const file = GetFilePath();
    if (IsLoaded()) {
        throw std::logic_error("Library already loaded: " + file);
    }
    m_private->handle = dlopen(file.c_str(), flags);
    if (!IsLoaded()) {
        std::error_code const code(errno, std::generic_category());
        throw std::system_error(code, "Error loading " + file + ". " + loaderError());
    }
}

void SharedLibrary::Unload()
{
    if (IsLoaded()) {
        if (dlclose(m_private->handle) != 0) {
            throw std::runtime_error("Error unloading " + GetFilePath() + ". " + loaderError());
        }
        m_private->handle = nullptr;
    }
}

bool SharedLibrary::mayChangeParts() const
{
    return !IsLoaded() && m_private->file.empty();
}

void SharedLibrary::SetName(std::string const& name)
{
    if (mayChangeParts()) {
        m_private->name = name;
    }
}

std::string SharedLibrary::GetName() const
{
    return m_private->name;
}

std::string SharedLibrary::GetFilePath(std::string const& name) const
{
    auto const& own = *m_private;
    return own.file.empty() ? own.path + "/" + own.prefix + name + own.suffix : own.file;
}

void SharedLibrary::SetFilePath(std::string const& absoluteFilePath)
{
    if (IsLoaded()) {
        return;
    }
    auto const slash = absoluteFilePath.rfind('/');
    bool const hasFolder = slash != std::string::npos;
    m_private->file = absoluteFilePath;
    m_private->path = hasFolder ? absoluteFilePath.substr(0, slash) : std::string();
    m_private->name = hasFolder ? absoluteFilePath.substr(slash + 1) : absoluteFilePath;
    cutPrefix(m_private->name, m_private->prefix);
    cutSuffix(m_private->name, m_private->suffix);
}

std::string SharedLibrary::GetFilePath() const
{
    return GetFilePath(m_private->name);
}

void SharedLibrary::SetLibraryPath(std::string const& path)
{
    if (mayChangeParts()) {
        m_private->path = path;
    }
}

std::string SharedLibrary::GetLibraryPath() const
{
    return m_private->path;
}

void SharedLibrary::SetSuffix(std::string const& suffix)
{
    if (mayChangeParts()) {
        m_private->suffix = suffix;
    }
}

std::string SharedLibrary::GetSuffix() const
{
    return m_private->suffix;
}

void SharedLibrary::SetPrefix(std::string const& prefix)
{
    if (mayChangeParts()) {
        m_private->prefix = prefix;
    }
}

std::string SharedLibrary::GetPrefix() const
{
    return m_private->prefix;
}

void* SharedLibrary::GetHandle() const
{
    return m_private->handle;
}

bool SharedLibrary::IsLoaded() const
{
    return m_private->handle != nullptr;
}

} // namespace cppmicroservices
