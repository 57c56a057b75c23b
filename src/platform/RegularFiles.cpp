#include "platform/RegularFiles.h"

#include "platform/InstallError.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>

namespace ostrel::platform {
namespace {

struct Close {
    void operator()(DIR* stream) const { ::closedir(stream); }
};

bool isRegularFile(const std::string& path)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) {
        return S_ISREG(status.st_mode);
    }
    if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
        failToRead(path, errno);
    }
    return false;
}

/// Without this permission nothing in the directory can be opened. Each entry is asked for its status then, and the
/// first one that cannot be told is the error.
bool maySearch(const std::string& directoryWithSlash)
{
    struct stat status {};
    return ::stat((directoryWithSlash + '.').c_str(), &status) == 0;
}

} // namespace

// Not std::filesystem::directory_iterator: it allocates in functions that must not throw.
std::vector<std::string> regularFiles(const std::string& directory)
{
    const std::unique_ptr<DIR, Close> stream{::opendir(directory.c_str())};
    if (!stream) {
        failToRead(directory, errno);
    }
    std::string path = directory.back() == '/' ? directory : directory + '/';
    const std::size_t prefix = path.size();
    const bool kindsAreEnough = maySearch(path);
    std::vector<std::string> names;
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(stream.get());
        if (entry == nullptr) {
            if (errno != 0) {
                failToRead(directory, errno);
            }
            break;
        }
        const std::string_view name{entry->d_name};
        if (name == "." || name == "..") {
            continue;
        }
        const bool isKnown = kindsAreEnough && entry->d_type != DT_UNKNOWN && entry->d_type != DT_LNK;
        path.replace(prefix, std::string::npos, name);
        if (isKnown ? entry->d_type == DT_REG : isRegularFile(path)) {
            names.emplace_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace ostrel::platform
