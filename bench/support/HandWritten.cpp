#include "support/HandWritten.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>

#include <sstream>

namespace bench {

void HandWritten::load(const std::string& name)
{
    const std::lock_guard lock{m_mutex};
    const auto found =
        name.front() == '(' ? m_context.GetServiceReferences("", name) : m_context.GetServiceReferences(name, "");
    bool any = false;
    for (const auto& reference : found) {
        const auto [first, last] = m_held.equal_range(name);
        bool held = false;
        for (auto entry = first; entry != last && !held; ++entry) {
            held = entry->second.first == reference;
        }
        if (!held) {
            m_held.emplace(name, Held{reference, m_context.GetService(reference)});
            any = true;
        }
    }
    if (any) {
        m_names.insert(name);
    }
}

void HandWritten::loadAllOf(const std::string& location)
{
    const std::lock_guard lock{m_mutex};
    std::vector<std::string> names;
    for (const auto& bundle : m_context.GetBundles(location)) {
        for (const auto& reference : bundle.GetRegisteredServices()) {
            names.push_back("(service.id=" + reference.GetProperty("service.id").ToString() + ")");
        }
    }
    for (const auto& name : names) {
        load(name);
    }
}

void HandWritten::unload(const std::string& name)
{
    std::vector<Held> released;
    {
        const std::lock_guard lock{m_mutex};
        const auto [first, last] = m_held.equal_range(name);
        for (auto entry = first; entry != last; ++entry) {
            released.push_back(entry->second);
        }
        m_held.erase(name);
        m_names.erase(name);
    }
    for (Held& held : released) {
        held = Held{};
    }
}

void HandWritten::unloadAll()
{
    const std::vector<std::string> names(m_names.begin(), m_names.end());
    for (const auto& name : names) {
        unload(name);
    }
}

std::string HandWritten::report(const std::string& location)
{
    const std::lock_guard lock{m_mutex};
    std::stringstream stream;
    stream << "Bundles:\n";
    for (const auto& bundle : m_context.GetBundles(location)) {
        stream << "    " << bundle.GetSymbolicName() << ", " << bundle.GetBundleId() << ", " << bundle.GetState()
               << "\n";
        for (const auto& [key, value] : bundle.GetHeaders()) {
            stream << "        " << key << " = " << value.ToString() << "\n";
        }
    }
    stream << "Manually loaded service types:\n";
    for (const auto& [name, held] : m_held) {
        stream << "    " << held.first.GetProperty("objectclass").ToString() << "\n";
    }
    stream << "Bundle services:\n";
    for (const auto& bundle : m_context.GetBundles(location)) {
        stream << "    " << bundle.GetSymbolicName() << ":\n";
        for (const auto& reference : bundle.GetRegisteredServices()) {
            stream << "        Service id: " << reference.GetProperty("service.id").ToString() << "\n";
            stream << "            Classes:\n";
            const auto interfaces = m_context.GetService(reference);
            for (const auto& [name, object] : *interfaces) {
                stream << "               " << name << "\n";
            }
            stream << "            Properties:\n";
            for (const auto& key : reference.GetPropertyKeys()) {
                stream << "                " << key << " = " << reference.GetProperty(key).ToString() << "\n";
            }
            stream << "            Used by:\n";
            for (const auto& user : reference.GetUsingBundles()) {
                stream << "                " << user.GetSymbolicName() << "\n";
            }
        }
    }
    return stream.str();
}

} // namespace bench
