#include "inspection/files/Survey.h"

#include "bundle_reader/Holding.h"
#include "bundle_reader/file/FileList.h"
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"
#include "inspection/files/FileFault.h"
#include "inspection/files/FrameworkValue.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/BundleVersion.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <platform/InstallBundles.h>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace ostrel::inspection {
namespace {

using bundle_reader::Contents;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;

/// Symbolic name and version.
using Identity = std::pair<std::string, std::string>;

Identity identityOf(const Bundle& bundle)
{
    return {bundle.GetSymbolicName(), bundle.GetVersion().ToString()};
}

std::optional<std::u16string> utf16(const std::string& path)
{
    try {
        return platform::toUtf16(path);
    } catch (const std::runtime_error&) {
        return std::nullopt; // file names are bytes
    }
}

/// Installs a file whose name is no UTF-8, which the path of installBundles() cannot tell.
std::vector<Bundle> installBytes(BundleContext context, const std::string& path)
{
    if (faultOf(path, bundle_reader::read(path))) {
        throw std::runtime_error{"a fault that is looked for again by who catches this"};
    }
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> canonical{::realpath(path.c_str(), nullptr)};
    return context.InstallBundles(canonical ? canonical.get() : path);
}

class Surveyor {
public:
    explicit Surveyor(BundleContext context) : m_context{std::move(context)} {}

    SurveyedFile look(const std::string& path)
    {
        SurveyedFile file;
        file.path = path;
        try {
            take(file, install(path));
        } catch (const std::bad_alloc&) {
            throw; // says nothing about the file
        } catch (const std::exception& error) {
            if (!m_context) {
                throw; // nor does a framework that has gone
            }
            sayWhy(file, error.what());
        }
        return file;
    }

private:
    std::vector<Bundle> install(const std::string& path)
    {
        auto wide = utf16(path);
        return wide ? platform::installBundles(m_context, platform::Utf16Path{std::move(*wide)})
                    : installBytes(m_context, path);
    }

    void take(SurveyedFile& file, const std::vector<Bundle>& bundles)
    {
        for (const Bundle& bundle : bundles) {
            if (m_seen.insert(bundle.GetBundleId()).second) {
                m_installed.emplace_back(bundle, file.path);
                file.bundles.push_back(bundle);
            }
        }
        if (file.bundles.empty()) {
            file.passedOver = "it is another name of \"" + holderOf(identityOf(bundles.front())).value_or("") + '"';
        }
    }

    void sayWhy(SurveyedFile& file, const std::string& refusal)
    {
        try {
            const Contents contents = bundle_reader::read(file.path);
            if (bundle_reader::isPassedOver(file.path, contents)) {
                file.passedOver = whyNoBundle(contents);
                return;
            }
            file.fault = faultOf(file.path, contents);
            describe(file, contents);
        } catch (const std::system_error& error) {
            file.fault = unreadable(file.path, error.code());
        }
        if (!file.fault) {
            file.fault = Finding{Code::notABundle,
                                 file.path,
                                 {},
                                 "the framework refuses the file",
                                 refusal,
                                 "mend what the framework says, and build the bundle again"};
        }
    }

    /// What can be told of a bundle that was not installed, and whether it is a second one.
    void describe(SurveyedFile& file, const Contents& contents)
    {
        for (const bundle_reader::Folder& folder : contents.folders) {
            const auto json = bundle_reader::readJson(folder.manifest.value_or(""));
            if (json.fault) {
                continue;
            }
            const auto text = bundle_reader::versionText(json.root);
            const std::string version =
                toText(text ? bundle_reader::readVersion(*text).version : bundle_reader::Version{});
            if (contents.folders.size() == 1) {
                file.symbolicName = folder.name;
                file.version = version;
                file.componentName = componentNameOf(json.root);
            }
            const auto twin = holderOf({folder.name, version});
            if (!file.fault && twin) {
                file.fault = Finding{Code::duplicateBundle,
                                     file.path,
                                     folder.name,
                                     "the bundle \"" + folder.name + "\", version " + version + ", is there already",
                                     '"' + *twin + "\" holds it too",
                                     "remove one of the two files, or give one of the bundles another version"};
            }
        }
    }

    /// The file in which a bundle was installed. Only what fails asks, so the index grows when it does.
    std::optional<std::string> holderOf(const Identity& identity)
    {
        for (; m_indexed < m_installed.size(); ++m_indexed) {
            const auto& [bundle, path] = m_installed[m_indexed];
            m_holders.emplace(identityOf(bundle), path);
        }
        const auto found = m_holders.find(identity);
        return found == m_holders.end() ? std::nullopt : std::optional{found->second};
    }

    BundleContext m_context;
    std::set<long> m_seen;
    std::vector<std::pair<Bundle, std::string>> m_installed;
    std::map<Identity, std::string> m_holders; // of the first m_indexed
    std::size_t m_indexed = 0;
};

} // namespace

std::string joined(const std::string& directory, const std::string& name)
{
    return directory.back() == '/' ? directory + name : directory + '/' + name;
}

Survey survey(const BundleContext& context, const std::string& directory)
{
    const bundle_reader::FileList list = bundle_reader::listFiles(directory);
    if (list.error != 0) {
        throw std::system_error{list.error, std::generic_category(), list.unreadable};
    }
    Survey result;
    result.hasFolders = list.hasFolders;
    Surveyor surveyor{context};
    for (const std::string& name : list.files) {
        result.files.push_back(surveyor.look(joined(directory, name)));
    }
    return result;
}

} // namespace ostrel::inspection
