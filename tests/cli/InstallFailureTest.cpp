#include "cli/FaultRun.h"
#include "cli/ZipBundle.h"

#include <fstream>

namespace ostrel::test {

namespace {

/// Files that cannot be installed.
class InstallFailure : public FaultRun {
protected:
    void write(const std::string& fileName, const std::string& content) const { directory.write(fileName, content); }

    void expectError(const std::string& err) const
    {
        const ProgramResult result = run();

        EXPECT_EQ(result.status, 4);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, err);
    }
};

std::string manifestOf(const std::string& more)
{
    return R"({"bundle.symbolic_name": "a", "zq": {"component": {"name": "a"}})" + more + "}";
}

} // namespace

TEST_F(InstallFailure, GivenSeveralBadFilesBesideGoodOnes_ThenEachIsNamed)
{
    add("prints");
    write("notes.txt", "only notes");
    write("liba.so", "text");
    write("libb.so", zipBundle("a", "{"));

    expectError(R"(ostrel-host: error: <bundles>/liba.so: the file is no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  build it again, or take it out of the directory
ostrel-host: error: <bundles>/libb.so: a manifest cannot be understood [manifest-syntax]
  why: Missing a name for object member. at offset 1
  do:  correct it and build the bundle again
)");
}

TEST_F(InstallFailure, GivenManyBadFiles_ThenTheyStandInTheOrderOfTheirNames)
{
    std::string err;
    for (const char* const name : {"d", "a", "f", "c", "b", "e"}) {
        write(std::string{name} + ".so", "text");
    }
    for (const char* const name : {"a", "b", "c", "d", "e", "f"}) {
        err += std::string{"ostrel-host: error: <bundles>/"} + name +
               ".so: the file is no bundle [not-a-bundle]\n"
               "  why: it is neither a shared object nor a zip archive\n"
               "  do:  build it again, or take it out of the directory\n";
    }

    expectError(err);
}

TEST_F(InstallFailure, GivenDamagedArchive_ThenItSaysHow)
{
    const std::string whole = zipBundle("a", manifestOf(""));
    write("a.zip", whole.substr(0, 60) + whole.substr(70));

    expectError(R"(ostrel-host: error: <bundles>/a.zip: the archive in the file is damaged [damaged-archive]
  why: its end record names a directory that is not there
  do:  build the bundle again
)");
}

TEST_F(InstallFailure, GivenTruncatedLibrary_ThenItSaysSo)
{
    add("prints");
    std::filesystem::resize_file(directory.path() / "prints.so", 5000);

    expectError(R"(ostrel-host: error: <bundles>/prints.so: the shared object is truncated [truncated-library]
  why: a segment reaches past the end of the file
  do:  build the bundle again
)");
}

TEST_F(InstallFailure, GivenArchiveWithoutManifest_ThenItSaysSo)
{
    write("liba.so", zipInMemory([](zip_t* archive) { zip_dir_add(archive, "a", ZIP_FL_ENC_UTF_8); }));

    expectError(R"(ostrel-host: error: <bundles>/liba.so: the archive in the file holds no manifest [no-manifest]
  why: no <symbolic name>/manifest.json
  do:  build the bundle again with a manifest
)");
}

TEST_F(InstallFailure, GivenOneBundleInTwoFiles_ThenBothAreNamed)
{
    write("a.zip", zipBundle("a", manifestOf("")));
    write("b.zip", zipBundle("a", manifestOf("")));

    expectError(R"(ostrel-host: error: <bundles>/b.zip: another file holds the same bundle [duplicate-bundle]
  why: '<bundles>/b.zip' and '<bundles>/a.zip' both hold the bundle 'a', version 0.0.0
  do:  remove one of the files or give one another version
)");
}

TEST_F(InstallFailure, GivenManifestWithoutSymbolicName_ThenTheKeyIsNamed)
{
    write("a.zip", zipBundle("a", "{}"));

    expectError(R"(ostrel-host: error: <bundles>/a.zip: a manifest has no "bundle.symbolic_name" [no-symbolic-name]
  why: bundle.symbolic_name is not defined in the bundle manifest for bundle a (location=<bundles>/a.zip).
  do:  correct it and build the bundle again
)");
}

TEST_F(InstallFailure, GivenManifestWithBadVersion_ThenTheKeyIsNamed)
{
    write("a.zip", zipBundle("a", manifestOf(R"(, "bundle.version": "1.x")")));

    expectError(R"(ostrel-host: error: <bundles>/a.zip: a manifest has no valid "bundle.version" [bad-version]
  why: The Json value for bundle.version for bundle a (location=<bundles>/a.zip) is not valid: The version identifier is invalid: invalid format
  do:  correct it and build the bundle again
)");
}

} // namespace ostrel::test
