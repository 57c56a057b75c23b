#include "contract/ThrownText.h"

#include <cppmicroservices/SharedLibrary.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

using cppmicroservices::SharedLibrary;
using ostrel::test::thrownText;

std::string const file = CONTRACT_LIBRARY;
std::string const folder = file.substr(0, file.rfind('/'));

bool isMapped()
{
    void* const handle = dlopen(file.c_str(), RTLD_NOLOAD | RTLD_LAZY);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

TEST(Library, isMadeOfParts)
{
    SharedLibrary library("/folder", "name");
    EXPECT_EQ("/folder", library.GetLibraryPath());
    EXPECT_EQ("name", library.GetName());
    EXPECT_EQ("lib", library.GetPrefix());
    EXPECT_EQ(".so", library.GetSuffix());
    EXPECT_EQ("/folder/libname.so", library.GetFilePath());
    EXPECT_EQ("/folder/libother.so", library.GetFilePath("other"));
    library.SetPrefix("p");
    library.SetSuffix(".s");
    library.SetName("n");
    library.SetLibraryPath("/f");
    EXPECT_EQ("/f/pn.s", library.GetFilePath());
    EXPECT_EQ("/f/pm.s", library.GetFilePath("m"));
}

TEST(Library, startsEmpty)
{
    SharedLibrary const library;
    EXPECT_EQ("", library.GetName());
    EXPECT_EQ("", library.GetLibraryPath());
    EXPECT_EQ("/lib.so", library.GetFilePath());
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(nullptr, library.GetHandle());
}

void expectParts(std::string const& path, std::string const& folder, std::string const& name)
{
    SharedLibrary const library(path);
    EXPECT_EQ(path, library.GetFilePath());
    EXPECT_EQ(path, library.GetFilePath("other"));
    EXPECT_EQ(folder, library.GetLibraryPath()) << path;
    EXPECT_EQ(name, library.GetName()) << path;
}

TEST(Library, takesAFileApart)
{
    expectParts("/a/libx.so", "/a", "x");
    expectParts("/a/x.so", "/a", "x");
    expectParts("/a/libx", "/a", "x");
    expectParts("/a/x", "/a", "x");
    expectParts("/a/libx.so.1", "/a", "x.so.1");
    expectParts("/a/xlib.so", "/a", "xlib");
    expectParts("/a/liblib.so.so", "/a", "lib.so");
    expectParts("/a/lib.so", "/a", "");
    expectParts("/a/b/", "/a/b", "");
    expectParts("/libx.so", "", "x");
    expectParts("libx.so", "", "x");
    expectParts("./b/libx.so", "./b", "x");
}

TEST(Library, keepsTheFileThatItWasGiven)
{
    SharedLibrary library("/a/libx.so");
    library.SetName("n");
    library.SetLibraryPath("/b");
    library.SetPrefix("p");
    library.SetSuffix("s");
    EXPECT_EQ("/a/libx.so", library.GetFilePath());
    EXPECT_EQ("x", library.GetName());
    EXPECT_EQ("/a", library.GetLibraryPath());
    EXPECT_EQ("lib", library.GetPrefix());
    EXPECT_EQ(".so", library.GetSuffix());
    library.SetFilePath("/c/liby.so");
    EXPECT_EQ("/c/liby.so", library.GetFilePath());
    EXPECT_EQ("y", library.GetName());
    library.SetFilePath("");
    EXPECT_EQ("/lib.so", library.GetFilePath());
    library.SetName("n");
    library.SetLibraryPath("/b");
    EXPECT_EQ("/b/libn.so", library.GetFilePath());
}

TEST(Library, cutsTheOwnPrefixAndSuffix)
{
    SharedLibrary library;
    library.SetPrefix("p");
    library.SetSuffix(".s");
    library.SetFilePath("/a/pname.s");
    EXPECT_EQ("name", library.GetName());
    library.SetFilePath("/a/libname.so");
    EXPECT_EQ("libname.so", library.GetName());
}

TEST(Library, isLoadedAndUnloaded)
{
    SharedLibrary library(file);
    ASSERT_FALSE(isMapped());
    library.Load();
    EXPECT_TRUE(library.IsLoaded());
    EXPECT_TRUE(isMapped());
    EXPECT_NE(nullptr, dlsym(library.GetHandle(), "contractLibraryNumber"));
    EXPECT_EQ("Library already loaded: " + file, thrownText<std::logic_error>([&] { library.Load(); }));
    library.SetFilePath("/other");
    EXPECT_EQ(file, library.GetFilePath());
    library.Unload();
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(nullptr, library.GetHandle());
    EXPECT_FALSE(isMapped());
    library.Unload();
    library.Load(RTLD_NOW);
    EXPECT_TRUE(library.IsLoaded());
    library.Unload();
}

TEST(Library, keepsItsPartsWhileItIsLoaded)
{
    SharedLibrary library(folder, "contract_library");
    EXPECT_EQ(file, library.GetFilePath());
    library.Load();
    library.SetName("n");
    library.SetLibraryPath("/b");
    library.SetPrefix("p");
    library.SetSuffix("s");
    EXPECT_EQ(file, library.GetFilePath());
    library.Unload();
    library.SetName("n");
    EXPECT_EQ(folder + "/libn.so", library.GetFilePath());
}

TEST(Library, isSharedByCopies)
{
    SharedLibrary library(file);
    SharedLibrary const copy(library);
    SharedLibrary assigned;
    assigned = library;
    library.Load();
    EXPECT_TRUE(copy.IsLoaded());
    EXPECT_EQ(library.GetHandle(), assigned.GetHandle());
    assigned.Unload();
    EXPECT_FALSE(library.IsLoaded());
}

TEST(Library, staysLoadedWithoutAHandle)
{
    void* handle = nullptr;
    {
        SharedLibrary library(file);
        library.Load();
        handle = library.GetHandle();
    }
    EXPECT_TRUE(isMapped());
    dlclose(handle);
}

TEST(Library, saysWhyItCannotBeLoaded)
{
    SharedLibrary missing("/nowhere", "x");
    auto const text = thrownText<std::system_error>([&] { missing.Load(); });
    EXPECT_EQ(0U, text.find("Error loading /nowhere/libx.so. /nowhere/libx.so: cannot open shared object file: "
                            "No such file or directory: "))
        << text;
    EXPECT_FALSE(missing.IsLoaded());
    missing.Unload();
    SharedLibrary unreadable("/etc/passwd");
    EXPECT_THROW(unreadable.Load(), std::system_error);
}

} // namespace
