#pragma once

#include "container/MicroServicesContainer.h"
#include "integration/support/BundleArchive.h"
#include "integration/support/LockProbe.h"
#include "integration/support/Services.h"
#include "support/Host.h"
#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace ostrel::test {

/// Takes what is written to std::cout while it lives, cut at each flush. At the end std::cout is as before.
class ConsoleCapture {
public:
    ConsoleCapture() : m_before(std::cout.rdbuf(&m_buffer)) { m_settings.copyfmt(std::cout); }
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;
    ~ConsoleCapture()
    {
        std::cout.rdbuf(m_before);
        std::cout.copyfmt(m_settings);
    }

    /// What was written from one flush to the next, in order.
    std::vector<std::string> flushed() const { return m_buffer.flushed; }
    /// What was written after the last flush.
    std::string rest() const { return m_buffer.pending; }
    /// All that was written.
    std::string text() const
    {
        std::string all;
        for (const std::string& part : m_buffer.flushed) {
            all += part;
        }
        return all + m_buffer.pending;
    }

    /// Called at each flush with what was written since the one before.
    void onFlush(std::function<void(const std::string&)> function) { m_buffer.onFlush = std::move(function); }

private:
    class Buffer final : public std::streambuf {
    public:
        std::vector<std::string> flushed;
        std::string pending;
        std::function<void(const std::string&)> onFlush;

    protected:
        std::streamsize xsputn(const char* text, std::streamsize length) override
        {
            pending.append(text, static_cast<std::size_t>(length));
            return length;
        }

        int_type overflow(int_type character) override
        {
            pending.push_back(traits_type::to_char_type(character));
            return traits_type::not_eof(character);
        }

        int sync() override
        {
            flushed.push_back(std::exchange(pending, {}));
            if (onFlush) {
                onFlush(flushed.back());
            }
            return 0;
        }
    };

    Buffer m_buffer;
    std::streambuf* m_before;
    std::ios m_settings{nullptr};
};

/// A property value without a text.
struct Wordless {
    friend std::ostream& operator<<(std::ostream&, const Wordless&)
    {
        throw std::runtime_error{"planned fault: no text"};
    }
};

/// A host with a started framework, one container over the system bundle's context, and the captured console.
class ConsoleFixture : public HostFixture {
protected:
    using Lines = std::vector<std::string>;
    using Bundle = cppmicroservices::Bundle;

    /// Adds a bundle without code and installs it, past the container. Ids ascend from bundle to bundle.
    Bundle installed(const std::string& name)
    {
        const std::string file = addArchive(host, name + ".zip", {bundleWith(name)});
        return host.context().InstallBundles(host.locationOf(file)).at(0);
    }

    Bundle started(const std::string& name)
    {
        Bundle bundle = installed(name);
        bundle.Start();
        return bundle;
    }

    /// Makes one bundle use a service until the test ends.
    void use(const Bundle& user, const ServiceReferenceU& service)
    {
        m_used.push_back(user.GetBundleContext().GetService(service));
    }

    static std::string joined(const std::vector<std::string>& names)
    {
        std::string text;
        for (const std::string& name : names) {
            text += (text.empty() ? "" : ", ") + name;
        }
        return text;
    }

    /// The lines on one service, put together from the framework's values; `users` is what follows the id.
    static Lines serviceLines(const ServiceReferenceU& service, const std::string& users)
    {
        Lines lines{"Service: " + std::to_string(idOf(service)) + users + "\n"};
        for (const std::string& key : service.GetPropertyKeys()) {
            lines.push_back("  " + key + ": " + service.GetProperty(key).ToString() + "\n");
        }
        return lines;
    }

    static Lines headerLines(const Bundle& bundle)
    {
        Lines lines;
        for (const auto& [key, value] : bundle.GetHeaders()) {
            lines.push_back("  " + key + ": " + value.ToString() + "\n");
        }
        return lines;
    }

    template <typename... More>
    static Lines inOrder(Lines first, const More&... more)
    {
        (first.insert(first.end(), more.begin(), more.end()), ...);
        return first;
    }

    RecordCapture log;
    ostrel::us_container::MicroServicesContainer container{host.context(), host.bundleDirectory()};

private:
    std::vector<cppmicroservices::InterfaceMapConstPtr> m_used;

protected:
    ConsoleCapture console;
};

} // namespace ostrel::test
