#include "support/BundleDirectory.h"

#include "bundle_reader/zip/ArchiveWriter.h"

#include <map>
#include <memory>
#include <optional>

namespace bench {

BundleDirectory::BundleDirectory(int count)
{
    for (int number = 0; number < count; ++number) {
        const std::string name = "bundle" + std::to_string(100000 + number);
        ostrel::bundle_reader::ArchiveWriter archive;
        archive.addFile(name + "/manifest.json",
                        R"({"bundle.symbolic_name": ")" + name +
                            R"(", "bundle.version": "1.0.0", "zq": {"component": {"name": ")" + name + R"("}}})",
                        9, std::nullopt);
        m_files.push_back(m_directory.write(name, archive.finish()).string());
        m_names.push_back(name);
    }
}

const BundleDirectory& directoryOf(int count)
{
    static std::map<int, std::unique_ptr<BundleDirectory>> directories;
    auto& directory = directories[count];
    if (!directory) {
        directory = std::make_unique<BundleDirectory>(count);
    }
    return *directory;
}

} // namespace bench
