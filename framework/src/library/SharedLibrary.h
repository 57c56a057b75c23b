#pragma once

#include <stdexcept>
#include <string>

namespace cppmicroservices::detail::core {

/// The dynamic loader refused; the message is its own.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A loaded library. There is no way to unload one: objects whose code it holds may live until the process ends.
class SharedLibrary {
public:
    SharedLibrary() = default;

    /// Loads the file, or finds that it is loaded already. Runs its static constructors.
    ///
    /// @param options flags for dlopen
    /// @throws LoadError
    SharedLibrary(std::string const& path, int options);

    /// The program itself, and what it is linked with; its symbols are found when it was linked to export them.
    ///
    /// @throws LoadError
    static SharedLibrary ofProgram(int options);

    bool isLoaded() const { return m_handle != nullptr; }

    /// The address of a symbol; null when there is none of that name.
    void* symbol(std::string const& name) const;

private:
    void keep(void* handle);

    void* m_handle = nullptr;
};

} // namespace cppmicroservices::detail::core
