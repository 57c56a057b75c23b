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
        EXPECT_EQ(result.err, err + "ostrel-host: note: nothing is started; with --keep-going the rest would be\n");
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

    expectError(
        R"(ostrel-host: warning: 1 file passed over: "<bundles>/notes.txt": it is neither a shared object nor a zip archive
ostrel-host: error: <bundles>/liba.so: the file is no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  build it again if it is to be a bundle; else take it out of the directory
ostrel-host: error: <bundles>/libb.so: the manifest of the bundle "a" is not valid JSON of an object [manifest-syntax]
  why: line 1, column 2 of manifest.json: invalid JSON: the text ends too early: '}' is missing
  do:  correct it there, and build the bundle again
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
               "  do:  build it again if it is to be a bundle; else take it out of the directory\n";
    }

    expectError(err);
}

TEST_F(InstallFailure, GivenDamagedArchive_ThenItSaysHow)
{
    const std::string whole = zipBundle("a", manifestOf(""));
    write("a.zip", whole.substr(0, 60) + whole.substr(70));

    expectError(R"(ostrel-host: error: <bundles>/a.zip: the archive in the file is damaged [damaged-archive]
  why: its end record names a directory that is not there
  do:  build the bundle again, or copy the file again
)");
}

TEST_F(InstallFailure, GivenTruncatedLibrary_ThenItSaysSo)
{
    add("prints");
    std::filesystem::resize_file(directory.path() / "prints.so", 5000);

    expectError(R"(ostrel-host: error: <bundles>/prints.so: the shared object is truncated [truncated-library]
  why: a segment reaches past the end of the file
  do:  copy it again, or build it again
)");
}

} // namespace ostrel::test
