/// Packs the manifests of one bundle file into the zip archive that the framework looks for in it.
///
/// usage: ostrel_bundle_packer <archive> <symbolic name> <manifest> [<symbolic name> <manifest>]...
///
/// The archive's bytes depend on nothing but the names and the manifests, so that a build can be repeated.

#include "InputFile.h"
#include "bundle_reader/zip/ArchiveWriter.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

int main(int argc, char* argv[])
{
    try {
        const std::vector<std::string> arguments{argv + 1, argv + argc};
        if (arguments.size() < 3 || arguments.size() % 2 == 0) {
            std::cerr << "usage: ostrel_bundle_packer <archive> <symbolic name> <manifest>"
                         " [<symbolic name> <manifest>]...\n";
            return EXIT_FAILURE;
        }
        constexpr int level = 6;
        ostrel::bundle_reader::ArchiveWriter archive;
        for (std::size_t i = 1; i < arguments.size(); i += 2) {
            archive.addFile(arguments[i] + "/manifest.json", readFile(arguments[i + 1], "cannot read the manifest"),
                            level, std::nullopt);
        }
        const std::string bytes = archive.finish();
        std::ofstream file{arguments.front(), std::ios::binary};
        file << bytes;
        file.close();
        if (!file) {
            throw std::runtime_error{"cannot write the archive '" + arguments.front() + "'"};
        }
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "ostrel_bundle_packer: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
