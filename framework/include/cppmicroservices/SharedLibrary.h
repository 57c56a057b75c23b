#pragma once

#include "cppmicroservices/FrameworkConfig.h"

#include <memory>
#include <string>

namespace cppmicroservices {

class SharedLibraryPrivate;

/// A library that the caller loads and unloads. Copies stand for the same library; the last one's destruction does not
/// unload it.
///
/// The file is either given as a whole or made of library path, prefix, name and suffix. The members that set one of
/// these have no effect while the library is loaded; those for a part, none while the file is given as a whole. Not to
/// be used by several threads at once.
class US_Framework_EXPORT SharedLibrary {
public:
    SharedLibrary();
    SharedLibrary(SharedLibrary const& other);

    /// The file "LIBPATH/libNAME.so".
    SharedLibrary(std::string const& libPath, std::string const& name);

    /// The file as a whole; see SetFilePath().
    SharedLibrary(std::string const& absoluteFilePath);

    ~SharedLibrary();
    SharedLibrary& operator=(SharedLibrary const& other);

    /// Loads the library with RTLD_LAZY | RTLD_LOCAL, or with the given flags for dlopen.
    ///
    /// @throws std::logic_error when it is loaded already
    /// @throws std::system_error when the dynamic loader refuses, with the file and the loader's reason
    void Load();
    void Load(int flags);

    /// Without effect when the library is not loaded. Objects whose code is in the library must be gone.
    ///
    /// @throws std::runtime_error when the dynamic loader refuses
    void Unload();

    void SetName(std::string const& name);
    std::string GetName() const;

    /// The file of a library of another name, unless the file is given as a whole.
    std::string GetFilePath(std::string const& name) const;

    /// Gives the file as a whole; library path and name are taken from it, the latter without the prefix and the suffix
    /// set before. Empty: the parts count again, with an empty library path and name.
    void SetFilePath(std::string const& absoluteFilePath);
    std::string GetFilePath() const;

    void SetLibraryPath(std::string const& path);
    std::string GetLibraryPath() const;

    void SetSuffix(std::string const& suffix);
    std::string GetSuffix() const;

    void SetPrefix(std::string const& prefix);
    std::string GetPrefix() const;

    /// What dlopen() gave; null while the library is not loaded.
    void* GetHandle() const;
    bool IsLoaded() const;

private:
    bool mayChangeParts() const;

    std::shared_ptr<SharedLibraryPrivate> m_private;
};

} // namespace cppmicroservices
