/// Packs resources into the archive of a bundle file; the back end of the CMake functions for resources.

#include "InputFile.h"
#include "ManifestText.h"
#include "bundle_reader/BundleFile.h"
#include "bundle_reader/zip/ArchiveWriter.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <getopt.h>
#include <iostream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

constexpr int badManifest = 2; // exit status

constexpr const char* usage = R"(usage: usResourceCompiler [options]

 -h, --help                     Print this and exit.
 -V, --verbose                  Say what is done.
 -n, --bundle-name <name>       The bundle, as in US_BUNDLE_NAME; needed with -m and -r.
 -c, --compression-level <0-9>  0 stores files as they are; 6 unless given.
 -o, --out-file <zip>           Write the archive to this file.
 -b, --bundle-file <binary>     Append the archive to this file. One of -o and -b is needed.
 -m, --manifest-add <file>      Add a manifest. Several become one; comments are taken out.
 -r, --res-add <file>           Add a file as it is, under the path given here. May be repeated.
 -z, --zip-add <zip>            Add the entries of an archive. May be repeated.
)";

/// A call that cannot be understood.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Call {
    bool help = false;
    bool verbose = false;
    std::map<char, std::string> given; // n, c, o and b
    std::vector<std::string> manifests, resources, archives;

    std::string value(char option) const
    {
        const auto found = given.find(option);
        return found == given.end() ? std::string{} : found->second;
    }
};

void addOnce(std::vector<std::string>& values, const std::string& value)
{
    if (std::find(values.begin(), values.end(), value) == values.end()) {
        values.push_back(value);
    }
}

Call parse(int argc, char* argv[])
{
    const option options[] = {{"help", no_argument, nullptr, 'h'},
                              {"verbose", no_argument, nullptr, 'V'},
                              {"bundle-name", required_argument, nullptr, 'n'},
                              {"compression-level", required_argument, nullptr, 'c'},
                              {"out-file", required_argument, nullptr, 'o'},
                              {"bundle-file", required_argument, nullptr, 'b'},
                              {"manifest-add", required_argument, nullptr, 'm'},
                              {"res-add", required_argument, nullptr, 'r'},
                              {"zip-add", required_argument, nullptr, 'z'},
                              {nullptr, 0, nullptr, 0}};
    Call call;
    call.help = argc == 1;
    for (int found = 0; (found = getopt_long(argc, argv, "hVn:c:o:b:m:r:z:", options, nullptr)) != -1;) {
        const std::string value = optarg == nullptr ? "" : optarg;
        const char option = static_cast<char>(found);
        if (option == 'h') {
            call.help = true;
        } else if (option == 'V') {
            call.verbose = true;
        } else if (option == '?') {
            throw UsageError{"Parsing command line arguments failed."};
        } else if (value.empty()) {
            throw UsageError{std::string{"Option '"} + option + "' requires a non-empty argument."};
        } else if (option == 'm') {
            addOnce(call.manifests, value);
        } else if (option == 'r') {
            addOnce(call.resources, value);
        } else if (option == 'z') {
            addOnce(call.archives, value);
        } else if (!call.given.emplace(option, value).second) {
            throw UsageError{std::string{option} + " appears multiple times in the arguments."};
        }
    }
    if (optind < argc) {
        throw UsageError{std::string{"unrecognized argument '"} + argv[optind] + "'."};
    }
    return call;
}

void check(const Call& call)
{
    if (call.value('o').empty() && call.value('b').empty()) {
        throw UsageError{"At least one of the options (--bundle-file | --out-file) is required."};
    }
    if (call.value('n').empty() && !(call.manifests.empty() && call.resources.empty())) {
        throw UsageError{"If either --manifest-add or --res-add is provided, --bundle-name must be provided."};
    }
    const std::string level = call.value('c');
    if (!level.empty() && (level.size() != 1 || level.front() < '0' || level.front() > '9')) {
        throw UsageError{"The compression level '" + level + "' is not one of 0 to 9."};
    }
    if (call.manifests.empty() && call.resources.empty() && call.archives.empty()) {
        throw UsageError{"There is nothing to add; give --manifest-add, --res-add or --zip-add."};
    }
}

/// When the file was last changed; never later than SOURCE_DATE_EPOCH, with which a build asks to be repeatable.
std::optional<std::time_t> lastModified(const std::string& path)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    const char* const epoch = std::getenv("SOURCE_DATE_EPOCH");
    return epoch == nullptr ? status.st_mtime : std::min<std::time_t>(status.st_mtime, std::atoll(epoch));
}

/// The manifests in an archive are checked here, as whoever installs the bundle can only find out.
void checkManifests(const std::string& archive)
{
    for (const auto& folder : ostrel::bundle_reader::read(archive).folders) {
        if (folder.manifest) {
            ManifestText::check(*folder.manifest, archive + " (" + folder.name + "/manifest.json)");
        }
    }
}

std::string archiveFor(const Call& call)
{
    const auto say = [&call](const std::string& text) {
        if (call.verbose) {
            std::cerr << text << '\n';
        }
    };
    const std::string level = call.value('c');
    const int packing = level.empty() ? 6 : level.front() - '0';
    const std::string folder = call.value('n') + "/";
    ostrel::bundle_reader::ArchiveWriter archive;
    if (!call.manifests.empty()) {
        ManifestText manifest;
        for (const auto& path : call.manifests) {
            manifest.add(readFile(path, "Could not open file"), path);
        }
        say("adding " + folder + "manifest.json");
        archive.addFile(folder + "manifest.json", manifest.text(), packing, std::nullopt);
    }
    for (const auto& path : call.resources) {
        std::string entry = folder;
        entry += path;
        say("adding " + entry);
        archive.addFile(entry, readFile(path, "Error writing file to archive: cannot read"), packing,
                        lastModified(path));
    }
    for (const auto& path : call.archives) {
        say("merging " + path);
        archive.merge(path);
        checkManifests(path);
    }
    return archive.finish();
}

void write(const std::string& path, const std::string& bytes, std::ios::openmode mode)
{
    std::ofstream file{path, std::ios::binary | mode};
    file << bytes;
    file.close();
    if (!file) {
        throw std::runtime_error{"cannot write '" + path + "'"};
    }
}

void run(const Call& call)
{
    const std::string output = call.value('o');
    const std::string binary = call.value('b');
    if (!binary.empty() && !std::ifstream{binary}) {
        throw std::runtime_error{"the bundle file '" + binary + "' cannot be opened"};
    }
    const std::string bytes = archiveFor(call);
    if (!output.empty()) {
        write(output, bytes, std::ios::trunc);
    }
    if (!binary.empty()) {
        write(binary, bytes, std::ios::app);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        const Call call = parse(argc, argv);
        if (call.help) {
            std::cout << usage;
            return EXIT_SUCCESS;
        }
        check(call);
        run(call);
        return EXIT_SUCCESS;
    } catch (const UsageError& error) {
        std::cerr << error.what() << " Check usage.\n";
        return EXIT_FAILURE;
    } catch (const ManifestError& error) {
        std::cerr << "JSON Parsing Error: " << error.what() << '\n';
        return badManifest;
    } catch (const std::exception& error) {
        std::cerr << "Error: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
