#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace ostrel::test {

TEST(Descriptors, GivenNoneLeftForTheDirectory_ThenTheRemedyIsTheirLimit)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path();

    // Three standard streams and the copy of standard output are all that there is.
    const ProgramResult result =
        runProgram("/bin/sh", {"-c", "ulimit -n 4 && exec \"$0\" run \"$1\"", OSTREL_TEST_HOST, path});

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "ostrel-host: error: " + path +
                              ": the bundle directory cannot be read\n"
                              "  why: Too many open files\n"
                              "  do:  raise the limit of open files of this process, which 'ulimit -n' shows\n");
}

} // namespace ostrel::test
