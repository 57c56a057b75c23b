#include "bundle/Activation.h"

#include "bundle/ActivatorType.h"
#include "bundle/BuiltFor.h"
#include "bundle/BundleRecord.h"
#include "framework/HandleAccess.h"
#include "resource/ResourceFile.h"

#include "cppmicroservices/SharedLibraryException.h"

#include <stdexcept>
#include <system_error>
#include <utility>

namespace cppmicroservices::core {

void Activation::load(BundleRecord const& bundle, int options, std::shared_ptr<BundleRecord> const& origin)
{
    if (m_library.isLoaded()) {
        return;
    }
    // Checked at installation already, but the file may be another one by now.
    if (!bundle.resources() || !bundle.resources()->isUnchanged()) {
        refuseForeignLibrary(bundle.location(), neededBy(bundle.location()));
    }
    try {
        m_library = SharedLibrary(bundle.location(), options);
    } catch (LoadError const& e) {
        std::error_code const none(0, std::generic_category());
        std::string const text = std::system_error(none, "Error loading " + bundle.location() + ". " + e.what()).what();
        throw SharedLibraryException(none, text, HandleAccess::bundle(origin));
    }
    m_symbols = ActivatorSymbols::of(m_library, bundle.name());
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
    if (m_symbols.setContext != nullptr) {
        m_symbols.setContext(nullptr);
    }
}

void Activation::putAside()
{
    if (m_activator != nullptr) {
        destroyPutAside();
        m_putAside = std::exchange(m_activator, nullptr);
    }
    if (m_symbols.setContext != nullptr) {
        m_symbols.setContext(nullptr);
    }
}

void Activation::destroyPutAside()
{
    if (auto* const activator = std::exchange(m_putAside, nullptr)) {
        m_symbols.destroy(activator);
    }
}

} // namespace cppmicroservices::core
