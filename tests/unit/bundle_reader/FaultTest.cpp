// What the reader says when the system or libzip fails. The functions of both are replaced in this program: each can be
// made to fail at one call.
#include "bundle_reader/BundleFile.h"
#include "support/LargeLibrary.h"
#include "support/NextDefinition.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>
#include <zip.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using ::testing::HasSubstr;

namespace {

/// The function that fails, and how; each call of it is counted.
struct Fault {
    std::string function;
    int error = EIO;    ///< of the system, or of libzip
    int call = 1;       ///< the first that fails
    bool again = false; ///< whether those after it fail too
    ssize_t most = -1;  ///< pread: no failure, but so many bytes at most
    int calls = 0;
};

Fault* fault = nullptr;

bool fails(const char* function)
{
    if (fault == nullptr || fault->function != function) {
        return false;
    }
    ++fault->calls;
    return fault->most < 0 && (fault->calls == fault->call || (fault->again && fault->calls > fault->call));
}

/// Arms a fault while it lives.
class Armed {
public:
    explicit Armed(Fault& which) { fault = &which; }
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
    ~Armed() { fault = nullptr; }
};

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    if (fails("open")) {
        errno = fault->error;
        return -1;
    }
    std::va_list arguments;
    va_start(arguments, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : mode_t{0};
    va_end(arguments);
    return nextDefinition<int(const char*, int, ...)>("open")(path, flags, mode);
}

// Opening without links is no function of the C library. It counts as "open" too, and fails alone as "openat2".
long syscall(long number, ...) noexcept
{
    std::va_list arguments;
    va_start(arguments, number);
    const long a = va_arg(arguments, long);
    const long b = va_arg(arguments, long);
    const long c = va_arg(arguments, long);
    const long d = va_arg(arguments, long);
    va_end(arguments);
    if (number == SYS_openat2 && (fails("openat2") || (fault != nullptr && fault->function == "open"))) {
        errno = fault->error;
        return -1;
    }
    return nextDefinition<long(long, ...)>("syscall")(number, a, b, c, d);
}

int fstat(int descriptor, struct stat* status) noexcept
{
    if (fails("fstat")) {
        errno = fault->error;
        return -1;
    }
    return nextDefinition<int(int, struct stat*)>("fstat")(descriptor, status);
}

ssize_t pread(int descriptor, void* to, size_t length, off_t offset)
{
    if (fails("pread")) {
        errno = fault->error;
        return fault->error == 0 ? 0 : -1;
    }
    const bool few = fault != nullptr && fault->function == "pread" && fault->most >= 0;
    const size_t asked = few ? std::min(length, static_cast<size_t>(fault->most)) : length;
    return nextDefinition<ssize_t(int, void*, size_t, off_t)>("pread")(descriptor, to, asked, offset);
}

zip_source_t* zip_source_function_create(zip_source_callback call, void* data, zip_error_t* error)
{
    if (fails("zip_source_function_create")) {
        zip_error_set(error, fault->error, 0);
        return nullptr;
    }
    return nextDefinition<zip_source_t*(zip_source_callback, void*, zip_error_t*)>("zip_source_function_create")(
        call, data, error);
}

zip_t* zip_open_from_source(zip_source_t* source, int flags, zip_error_t* error)
{
    if (fails("zip_open_from_source")) {
        zip_error_set(error, fault->error, 0);
        return nullptr;
    }
    return nextDefinition<zip_t*(zip_source_t*, int, zip_error_t*)>("zip_open_from_source")(source, flags, error);
}

const char* zip_get_name(zip_t* archive, zip_uint64_t index, zip_flags_t flags)
{
    return fails("zip_get_name")
               ? nullptr
               : nextDefinition<const char*(zip_t*, zip_uint64_t, zip_flags_t)>("zip_get_name")(archive, index, flags);
}

int zip_stat_index(zip_t* archive, zip_uint64_t index, zip_flags_t flags, zip_stat_t* status)
{
    if (fails("zip_stat_index")) {
        zip_error_set(zip_get_error(archive), fault->error, 0);
        return -1;
    }
    return nextDefinition<int(zip_t*, zip_uint64_t, zip_flags_t, zip_stat_t*)>("zip_stat_index")(archive, index, flags,
                                                                                                 status);
}

zip_file_t* zip_fopen_index(zip_t* archive, zip_uint64_t index, zip_flags_t flags)
{
    if (fails("zip_fopen_index")) {
        zip_error_set(zip_get_error(archive), fault->error, 0);
        return nullptr;
    }
    return nextDefinition<zip_file_t*(zip_t*, zip_uint64_t, zip_flags_t)>("zip_fopen_index")(archive, index, flags);
}

zip_int64_t zip_fread(zip_file_t* file, void* data, zip_uint64_t length)
{
    if (fails("zip_fread")) {
        zip_error_set(zip_file_get_error(file), fault->error, 0);
        return -1;
    }
    return nextDefinition<zip_int64_t(zip_file_t*, void*, zip_uint64_t)>("zip_fread")(file, data, length);
}

zip_int64_t zip_source_seek_compute_offset(zip_uint64_t offset, zip_uint64_t length, void* data, zip_uint64_t size,
                                           zip_error_t* error)
{
    if (fails("zip_source_seek_compute_offset")) {
        zip_error_set(error, fault->error, 0);
        return -1;
    }
    return nextDefinition<zip_int64_t(zip_uint64_t, zip_uint64_t, void*, zip_uint64_t, zip_error_t*)>(
        "zip_source_seek_compute_offset")(offset, length, data, size, error);
}

} // extern "C"

namespace {

constexpr const char* libzipInvalid = "Invalid argument";

class Faults : public ::testing::Test {
protected:
    /// What of a bundle is above the bounds up to which it is read in one go.
    enum class Large { nothing, file, archive };
    static constexpr Large kinds[] = {Large::nothing, Large::file, Large::archive};

    /// A library with an archive behind it.
    std::string bundle(Large large) const
    {
        const std::string between(large == Large::file ? 70000 : 0, '\0');
        const std::string pad(large == Large::archive ? smallArchive : 10, 'p');
        return directory
            .write("file",
                   contentOf(UNIT_PLAIN_LIBRARY) + between + zipText({{"n/manifest.json", "{}"}, {"n/pad", pad}}))
            .string();
    }

    static std::size_t openFiles()
    {
        const std::filesystem::directory_iterator all{"/proc/self/fd"};
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    static void expectWhole(const Contents& contents)
    {
        EXPECT_FALSE(contents.truncated);
        EXPECT_THAT(contents.needed, ::testing::Contains(UNIT_NEEDED_NAME));
        ASSERT_EQ(1U, contents.folders.size());
        EXPECT_EQ("{}", contents.folders[0].manifest);
    }

    /// What the reader says of the archive when libzip's function fails.
    std::string damageBy(const char* function, int error = ZIP_ER_INVAL)
    {
        Fault libzip;
        libzip.function = function;
        libzip.error = error;
        const std::string path = bundle(Large::nothing);
        const Armed armed{libzip};
        const Contents contents = read(path);
        EXPECT_EQ(Archive::damaged, contents.archive);
        EXPECT_TRUE(contents.folders.empty());
        return contents.damage;
    }

    TemporaryDirectory directory;
};

TEST_F(Faults, GivenAnyReadingThatFails_WhenFileIsRead_ThenTheErrorNamesItAndNothingStaysOpen)
{
    for (const Large large : kinds) {
        const std::string path = bundle(large);
        const std::size_t before = openFiles();
        int failures = 0;
        for (int call = 1;; ++call) {
            Fault system;
            system.function = "pread";
            system.call = call;
            const Armed armed{system};
            try {
                read(path);
                EXPECT_LT(system.calls, call) << "the failure of call " << call << " was not noticed";
                break;
            } catch (const std::system_error& error) {
                EXPECT_EQ(EIO, error.code().value());
                EXPECT_THAT(error.what(), HasSubstr("cannot read '" + path + "'"));
                ++failures;
            }
        }
        EXPECT_GT(failures, large == Large::nothing ? 0 : 5);
        EXPECT_EQ(before, openFiles());
    }
}

TEST_F(Faults, GivenAnyReadingThatIsInterrupted_WhenFileIsRead_ThenItIsRepeated)
{
    for (const Large large : kinds) {
        const std::string path = bundle(large);
        for (int call = 1;; ++call) {
            Fault system;
            system.function = "pread";
            system.error = EINTR;
            system.call = call;
            const Armed armed{system};
            expectWhole(read(path));
            if (system.calls < call) {
                break;
            }
        }
    }
}

TEST_F(Faults, GivenReadingsThatGiveFewBytes_WhenFileIsRead_ThenTheRestIsAskedFor)
{
    for (const Large large : kinds) {
        Fault system;
        system.function = "pread";
        system.most = 7;
        const std::string path = bundle(large);
        const Armed armed{system};
        expectWhole(read(path));
    }
}

TEST_F(Faults, GivenFileThatEndsSuddenly_WhenFileIsRead_ThenItIsNoBundleAndNothingWorse)
{
    const std::string path = bundle(Large::archive);
    for (int call = 1;; ++call) {
        Fault system;
        system.function = "pread";
        system.error = 0;
        system.call = call;
        system.again = true;
        const Armed armed{system};
        const Contents contents = read(path);
        if (system.calls < call) {
            expectWhole(contents);
            break;
        }
        EXPECT_NE(Archive::readable, contents.archive) << call;
    }
}

TEST_F(Faults, GivenFileThatCannotBeOpened_WhenRead_ThenTheErrorTellsWhy)
{
    const std::string path = bundle(Large::nothing);
    for (const char* function : {"open", "fstat"}) {
        Fault system;
        system.function = function;
        system.error = EMFILE;
        const std::size_t before = openFiles();
        {
            const Armed armed{system};
            try {
                read(path);
                ADD_FAILURE() << "nothing was thrown";
            } catch (const std::system_error& error) {
                EXPECT_EQ(EMFILE, error.code().value());
            }
        }
        EXPECT_EQ(before, openFiles());
    }
}

TEST_F(Faults, GivenSystemThatCannotOpenWithoutLinks_WhenRead_ThenItIsReadAndLinksAreNotRuledOut)
{
    const std::string path = bundle(Large::nothing);
    EXPECT_TRUE(read(path).reachedWithoutLinks);
    for (const int error : {ENOSYS, EPERM}) {
        Fault system;
        system.function = "openat2";
        system.error = error;
        const Armed armed{system};
        const Contents contents = read(path);
        expectWhole(contents);
        EXPECT_FALSE(contents.reachedWithoutLinks);
    }
}

TEST_F(Faults, GivenLargeArchive_WhenItsFileCannotBeRead_ThenTheErrorNamesFileEntryAndReason)
{
    const std::string path = bundle(Large::archive);
    const Contents contents = read(path);
    const auto failure = [&](Fault system, const std::function<void()>& work) {
        const Armed armed{system};
        try {
            work();
        } catch (const std::runtime_error& error) {
            return std::string{error.what()};
        }
        return std::string{"nothing was thrown"};
    };
    const std::string head = "cannot read the archive in '" + path + "': ";
    EXPECT_EQ(head + "Too many open files", failure({"open", EMFILE}, [&] { openArchive(path, contents.place); }));
    EXPECT_EQ(head + "Input/output error",
              failure({"pread", EIO}, [&] { ArchiveReader{openArchive(path, contents.place)}; }));
    const ArchiveReader reader{openArchive(path, contents.place)};
    EXPECT_EQ(head + "'n/pad': Input/output error", failure({"pread", EIO}, [&] { reader.read(1); }));
    EXPECT_EQ(head + "'n/pad': the file was removed, replaced or changed since it was first read",
              failure({"fstat", EIO}, [&] { reader.read(1); }));
    EXPECT_EQ(smallArchive, reader.read(1).size()) << "afterwards it can be read";
}

TEST_F(Faults, GivenLibzipThatFails_WhenFileIsRead_ThenItsWordsAreTheDamage)
{
    EXPECT_EQ(libzipInvalid, damageBy("zip_source_function_create"));
    EXPECT_EQ(libzipInvalid, damageBy("zip_open_from_source"));
    EXPECT_EQ("an entry has no name", damageBy("zip_get_name"));
    EXPECT_EQ("the size of 'n/manifest.json' is unknown", damageBy("zip_stat_index"));
    EXPECT_EQ(std::string{"'n/manifest.json' cannot be read: "} + libzipInvalid, damageBy("zip_fopen_index"));
    EXPECT_EQ(std::string{"'n/manifest.json' cannot be read: "} + libzipInvalid, damageBy("zip_fread"));
    EXPECT_EQ(libzipInvalid, damageBy("zip_source_seek_compute_offset"));
}

TEST_F(Faults, GivenLibzipWithoutMemory_WhenFileIsRead_ThenThatIsToldAndNoDamage)
{
    for (const char* function : {"zip_source_function_create", "zip_open_from_source", "zip_stat_index",
                                 "zip_fopen_index", "zip_fread", "zip_source_seek_compute_offset"}) {
        SCOPED_TRACE(function);
        EXPECT_THROW(damageBy(function, ZIP_ER_MEMORY), std::bad_alloc);
    }
}

TEST_F(Faults, GivenLibzipThatFails_WhenEntryIsRead_ThenTheErrorNamesFileAndEntry)
{
    const std::string path = bundle(Large::nothing);
    const ArchiveReader reader{openArchive(path, read(path).place)};
    for (const char* function : {"zip_fopen_index", "zip_fread"}) {
        Fault libzip;
        libzip.function = function;
        libzip.error = ZIP_ER_INVAL;
        const Armed armed{libzip};
        try {
            reader.read(1);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::runtime_error& error) {
            EXPECT_EQ("cannot read the archive in '" + path + "': 'n/pad': " + libzipInvalid,
                      std::string{error.what()});
        }
    }
    EXPECT_EQ("pppppppppp", reader.read(1));
}

} // namespace
