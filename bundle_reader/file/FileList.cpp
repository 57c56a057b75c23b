#include "bundle_reader/file/FileList.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>

namespace ostrel::bundle_reader {
namespace {

struct Close {
    void operator()(DIR* stream) const { ::closedir(stream); }
};

enum class Kind { file, folder, other };

Kind kindOf(mode_t mode)
{
    return S_ISREG(mode) ? Kind::file : S_ISDIR(mode) ? Kind::folder : Kind::other;
}

/// @return errno, 0 when the kind is known
int askKind(const std::string& path, Kind& kind)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) {
        kind = kindOf(status.st_mode);
        return 0;
    }
    kind = Kind::other;
    return errno == ENOENT || errno == ENOTDIR || errno == ELOOP ? 0 : errno;
}

/// Without this permission nothing in the directory can be opened. Each entry is asked for its status then, and the
/// first one that cannot be told is the error.
bool maySearch(const std::string& directoryWithSlash)
{
    struct stat status {};
    return ::stat((directoryWithSlash + '.').c_str(), &status) == 0;
}

FileList failed(const std::string& path, int error)
{
    FileList list;
    list.error = error;
    list.unreadable = path;
    return list;
}

} // namespace

// Not std::filesystem::directory_iterator: it allocates in functions that must not throw.
FileList listFiles(const std::string& directory)
{
    const std::unique_ptr<DIR, Close> stream{::opendir(directory.c_str())};
    if (!stream) {
        return failed(directory, errno);
    }
    std::string path = directory.back() == '/' ? directory : directory + '/';
    const std::size_t prefix = path.size();
    const bool kindsAreEnough = maySearch(path);
    FileList list;
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(stream.get());
        if (entry == nullptr) {
            if (errno != 0) {
                return failed(directory, errno);
            }
            break;
        }
        const std::string_view name{entry->d_name};
        if (name == "." || name == "..") {
            continue;
        }
        Kind kind = kindOf(DTTOIF(entry->d_type));
        if (!kindsAreEnough || entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
            path.replace(prefix, std::string::npos, name);
            if (const int error = askKind(path, kind); error != 0) {
                return failed(path, error);
            }
        }
        if (kind == Kind::file) {
            list.files.emplace_back(name);
        }
        list.hasFolders = list.hasFolders || kind == Kind::folder;
    }
    std::sort(list.files.begin(), list.files.end());
    return list;
}

} // namespace ostrel::bundle_reader
