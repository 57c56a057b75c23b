#include <gtest/gtest.h>

#include <inspection/StartFailure.h>

namespace {

using namespace ostrel::inspection;

void expectFailure(std::string_view text, const StartFailure& expected)
{
    const StartFailure failure = startFailure(text);

    EXPECT_EQ(failure.code, expected.code);
    EXPECT_EQ(failure.what, expected.what);
    EXPECT_EQ(failure.why, expected.why);
    EXPECT_EQ(failure.remedy, expected.remedy);
    EXPECT_EQ(failure.symbol, expected.symbol);
    EXPECT_EQ(failure.library, expected.library);
}

const char* const repairOrRefuse = "repair its activator, or refuse the bundle by other conditions";

TEST(StartFailure, GivenActivatorThatThrows_ThenItsWordsStandAlone)
{
    expectFailure("Bundle alpha (location= /b/liba.so) start failed: no such printer",
                  {Code::startThrows, "its start threw an exception", "no such printer", repairOrRefuse, "", ""});
}

TEST(StartFailure, GivenActivatorThatThrowsNoException_ThenItSaysSo)
{
    expectFailure("Bundle alpha (location= /b/liba.so) start failed: unknown",
                  {Code::startThrows, "its start threw something that is no std::exception",
                   "the framework does not tell what it was", repairOrRefuse, "", ""});
}

TEST(StartFailure, GivenBundleThatStartsAnother_ThenTheWordsOfThatStand)
{
    expectFailure("Bundle alpha (location= /b/liba.so) start failed: Bundle beta (location= /b/libb.so) start failed: "
                  "no such printer",
                  {Code::startThrows, "its start threw an exception", "no such printer", repairOrRefuse, "", ""});
}

TEST(StartFailure, GivenWordsLikeTheFrameworks_ThenOnlyItsOwnAreCutOff)
{
    expectFailure(
        "Bundle alpha (location= /b/liba.so) start failed: the job (x) start failed: 3",
        {Code::startThrows, "its start threw an exception", "the job (x) start failed: 3", repairOrRefuse, "", ""});
}

TEST(StartFailure, GivenTextOfAnotherKind_ThenItIsTheReason)
{
    for (const char* const text : {"", "Bundle", "Bundle alpha is uninstalled", "planned fault: Success"}) {
        expectFailure(text, {Code::startThrows, "its start threw an exception", text, repairOrRefuse, "", ""});
    }
}

TEST(StartFailure, GivenUndefinedSymbol_ThenItIsDemangled)
{
    for (const char* const end : {": Success: Success", "", ", version V_2: Success: Success"}) {
        expectFailure(
            "Error loading /b/liba.so. /b/liba.so: undefined symbol: _ZN4jobs5printERKNS_3JobE" + std::string{end},
            {Code::undefinedSymbol, "it needs the symbol 'jobs::print(jobs::Job const&)', which nothing defines",
             "neither its own library nor one that it is linked with defines the symbol",
             "add the source or link the library that defines it, and build the bundle again",
             "jobs::print(jobs::Job const&)", ""});
    }
}

TEST(StartFailure, GivenUndefinedSymbolOfC_ThenItIsShownAsItIs)
{
    EXPECT_EQ(startFailure("Error loading /a.so. /a.so: undefined symbol: print_job: Success: Success").symbol,
              "print_job");
}

TEST(StartFailure, GivenMissingLibrary_ThenItIsNamed)
{
    expectFailure("Error loading /b/liba.so. libprinter.so.2: cannot open shared object file: No such file or "
                  "directory: Success: Success",
                  {Code::libraryMissing, "it needs the library 'libprinter.so.2', which is not found",
                   "cannot open shared object file: No such file or directory",
                   "install that library, or name its directory in LD_LIBRARY_PATH", "", "libprinter.so.2"});
}

TEST(StartFailure, GivenFileThatIsGone_ThenItIsNotTakenForALibraryThatIsNeeded)
{
    expectFailure("Error loading /b. c/liba.so. /b. c/liba.so: cannot open shared object file: No such file or "
                  "directory: Success: Success",
                  {Code::libraryMissing, "its file is gone",
                   "cannot open shared object file: No such file or directory", "build the bundle again", "",
                   "/b. c/liba.so"});
}

TEST(StartFailure, GivenFullStopInThePath_ThenTheMissingLibraryIsNamed)
{
    EXPECT_EQ(startFailure("Error loading /b. c/liba.so. libprinter.so.2: cannot open shared object file: No such file "
                           "or directory: Success: Success")
                  .library,
              "libprinter.so.2");
}

TEST(StartFailure, GivenLibraryOfAnOlderVersion_ThenTheVersionIsNamed)
{
    expectFailure("Error loading /b/liba.so. /lib/libc.so.6: version `GLIBC_9.9' not found (required by /b/liba.so): "
                  "Success: Success",
                  {Code::libraryMissing, "it needs a newer library '/lib/libc.so.6'",
                   "the one that is found has no version 'GLIBC_9.9'",
                   "install a newer one, or build the bundle on this system", "", "/lib/libc.so.6"});
}

TEST(StartFailure, GivenAnotherErrorOfTheLoader_ThenItsWordsAreTheReason)
{
    expectFailure("Error loading /b/liba.zip. /b/liba.zip: invalid ELF header: Success: Success",
                  {Code::startThrows, "its library cannot be loaded", "/b/liba.zip: invalid ELF header",
                   "build the bundle again", "", ""});
}

TEST(StartFailure, GivenLibraryWithoutActivator_ThenTheMacroIsNamed)
{
    for (const char* const part : {"constructor", "destructor"}) {
        expectFailure(
            "Bundle alpha (location= /b/liba.so) start failed: Bundle alpha (location=/b/liba.so) activator " +
                std::string{part} + " not found",
            {Code::activatorMissing, "its library has no activator of the bundle 'alpha'",
             "the manifest says \"bundle.activator\": true, and the library does not export "
             "_us_create_activator_alpha and _us_destroy_activator_alpha",
             "write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its sources, or take "
             "\"bundle.activator\" out of the manifest if the bundle has none",
             "", ""});
    }
}

} // namespace
