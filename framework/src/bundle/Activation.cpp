#include "bundle/Activation.h"

#include "bundle/ActivatorType.h"
#include "bundle/BuiltFor.h"
#include "bundle/BundleRecord.h"
#include "bundle/Program.h"
#include "framework/HandleAccess.h"
#include "resource/ResourceFile.h"

#include "cppmicroservices/SharedLibraryException.h"

#include <stdexcept>
#include <system_error>
#include <utility>

namespace cppmicroservices::detail::core {

void Activation::load(BundleRecord const& bundle, int options, std::shared_ptr<BundleRecord> const& origin)
{
    if (m_library.isLoaded()) {
        return;
    }
    bool const isProgram = bundle.location() == programFile();
    // Checked at installation already, but the file may be another one by now.
    LibraryFile file;
    auto const& installed = bundle.resources();
    if (!isProgram && (!installed || !installed->wasWhole() || !installed->isUnchanged())) {
        file = inspectLibrary(bundle.location());
        refuseForeignLibrary(bundle.location(), file.needed);
    }
    SharedLibrary library;
    try {
        if (!file.damage.empty()) {
            // The dynamic loader would touch what is not there, and the process end by a signal.
            throw LoadError(bundle.location() + ": the file is damaged: " + file.damage);
        }
        library = isProgram ? SharedLibrary::ofProgram(options) : SharedLibrary(bundle.location(), options);
    } catch (LoadError const& e) {
        std::error_code const none(0, std::generic_category());
        std::string const text = std::system_error(none, "Error loading " + bundle.location() + ". " + e.what()).what();
        throw SharedLibraryException(none, text, HandleAccess::bundle(origin));
    }
    // Both or none, as a bundle that has its library is not looked at again.
    m_symbols = ActivatorSymbols::of(library, bundle.name());
    m_library = library;
}

void Activation::start(BundleRecord const& bundle, std::shared_ptr<BundleContextPrivate> const& context)
{
    if (m_symbols.create == nullptr) {
        throw std::runtime_error(bundle.text() + " activator constructor not found");
    }
    if (m_symbols.destroy == nullptr) {
        throw std::runtime_error(bundle.text() + " activator destructor not found");
    }
    if (m_symbols.setContext != nullptr) {
        m_symbols.setContext(context.get());
    }
    m_activator = m_symbols.create();
    if (m_activator == nullptr) {
        throw std::runtime_error(bundle.text() + " activator constructor returned a null pointer");
    }
    destroyPutAside();
    m_activator->Start(HandleAccess::context(context));
}

void Activation::stop(std::shared_ptr<BundleContextPrivate> const& context)
{
    if (m_activator != nullptr) {
        m_activator->Stop(HandleAccess::context(context));
    }
}

void Activation::destroy()
{
    if (auto* const activator = std::exchange(m_activator, nullptr)) {
        m_symbols.destroy(activator);
    }
}

void Activation::putAside()
{
    // One that was put aside before went when this one had been made.
    if (m_activator != nullptr) {
        m_putAside = std::exchange(m_activator, nullptr);
    }
}

void Activation::emptySlot() noexcept
{
    if (m_symbols.setContext == nullptr) {
        return;
    }
    try {
        m_symbols.setContext(nullptr);
    } catch (...) {
        // What the macro makes does not throw. A slot that keeps its context is harmless: one that is over is
        // recognised by its address.
        return;
    }
}

void Activation::destroyPutAside()
{
    if (auto* const activator = std::exchange(m_putAside, nullptr)) {
        m_symbols.destroy(activator);
    }
}

} // namespace cppmicroservices::detail::core
