#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/BundleArchive.h"
#include "integration/support/LockProbe.h"
#include "integration/support/Services.h"
#include "support/Host.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

/// The lines that a report has on a bundle, put together from the framework's values.
inline std::string bundleLines(const cppmicroservices::Bundle& bundle, const std::string& id, const std::string& state)
{
    std::string text = "    " + bundle.GetSymbolicName() + ", " + id + ", " + state + "\n";
    for (const auto& [key, value] : bundle.GetHeaders()) {
        text += "        " + key + " = " + value.ToString() + "\n";
    }
    return text;
}

/// The same for a service's properties, in the framework's order.
inline std::string propertyLines(const ServiceReferenceU& service)
{
    std::string text;
    for (const std::string& key : service.GetPropertyKeys()) {
        text += "                " + key + " = " + service.GetProperty(key).ToString() + "\n";
    }
    return text;
}

/// A service's block, with these interfaces and users.
inline std::string serviceBlock(const ServiceReferenceU& service, const std::vector<std::string>& interfaces,
                                const std::vector<std::string>& users)
{
    std::string text = "        Service id: " + std::to_string(idOf(service)) + "\n            Classes:\n";
    for (const std::string& name : interfaces) {
        text += "               " + name + "\n";
    }
    text += "            Properties:\n" + propertyLines(service) + "            Used by:\n";
    for (const std::string& user : users) {
        text += "                " + user + "\n";
    }
    return text;
}

/// A stream's buffer that shows each piece as it is inserted.
class PieceBuffer final : public std::streambuf {
public:
    std::vector<std::string> pieces;
    int flushes = 0;
    std::function<void(const std::string&)> onPiece;

protected:
    std::streamsize xsputn(const char* text, std::streamsize length) override
    {
        pieces.emplace_back(text, static_cast<std::size_t>(length));
        if (onPiece) {
            onPiece(pieces.back());
        }
        return length;
    }

    int_type overflow(int_type character) override
    {
        const char single = traits_type::to_char_type(character);
        xsputn(&single, 1);
        return traits_type::not_eof(character);
    }

    int sync() override
    {
        ++flushes;
        return 0;
    }
};

/// A string stream whose insertions go to a buffer that shows them piece by piece.
class PieceStream {
public:
    PieceStream() { static_cast<std::ios&>(m_stream).rdbuf(&buffer); }

    std::stringstream& stream() { return m_stream; }

    PieceBuffer buffer;

private:
    std::stringstream m_stream;
};

/// A property value without a text.
struct Textless {
    friend std::ostream& operator<<(std::ostream&, const Textless&)
    {
        throw std::runtime_error{"planned fault: no text"};
    }
};

/// A host and one container over the system bundle's context.
class ReportsFixture : public HostFixture {
protected:
    /// Starts a bundle without code through the container. Its id follows those of the bundles before.
    cppmicroservices::Bundle started(const std::string& name)
    {
        const std::string file = addArchive(host, name + ".zip", {bundleWith(name)});
        container.startBundle(file);
        return host.bundleIn(file);
    }

    /// Starts a bundle "alpha" that has this header beside its symbolic name, a value that no manifest file can hold.
    cppmicroservices::Bundle startedWithHeader(const std::string& key, const cppmicroservices::Any& value)
    {
        const std::string file = addArchive(host, "alpha.zip", {bundleWith("alpha")});
        cppmicroservices::AnyMap manifest{cppmicroservices::AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
        manifest["bundle.symbolic_name"] = std::string{"alpha"};
        manifest[key] = value;
        cppmicroservices::AnyMap manifests{cppmicroservices::AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
        manifests["alpha"] = manifest;
        host.context().InstallBundles(host.locationOf(file), manifests);
        container.startBundle(file);
        return host.bundleIn(file);
    }

    std::stringstream stream;
    ostrel::us_container::MicroServicesContainer container{host.context(), host.bundleDirectory()};
};

} // namespace ostrel::test
