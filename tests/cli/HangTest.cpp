#include "cli/FaultRun.h"

namespace ostrel::test {

namespace {

const std::string sooner = "\n  do:  let it come back sooner, or give it more time by --timeout\n";

/// Bundles that do not come back.
class Hang : public FaultRun {
protected:
    void expectHang(const std::string& name, const std::string& text) const
    {
        const ProgramResult result = runWith(name, {"--timeout", "1"});

        EXPECT_EQ(result.status, 4);
        EXPECT_EQ(result.err, "ostrel-host: error: <bundles>/" + name + ".so: the bundle \"" + name +
                                  "\" did not end " + text + sooner);
    }
};

const char* const startHangs = "being started within 1 s [start-hangs]\n"
                               "  why: its Start(), or what its library runs when it is loaded, has not come back";

} // namespace

TEST_F(Hang, GivenStart_ThenStatusFourAndTheBundleIsNamed)
{
    expectHang("hangs_in_start", startHangs);
}

TEST_F(Hang, GivenStaticConstructor_ThenTheBundleIsNamed)
{
    expectHang("hangs_in_constructor", startHangs);
}

TEST_F(Hang, GivenBundleThatAnotherOneStarts_ThenTheInnerOneIsNamed)
{
    add("starts_another", "a.so");

    expectHang("hangs_in_start", startHangs);
}

TEST_F(Hang, GivenStop_ThenTheBundleIsNamed)
{
    expectHang("hangs_in_stop", "being stopped within 1 s [stop-hangs]\n  why: its Stop() has not come back");
}

TEST_F(Hang, GivenFactory_ThenTheBundleWhoseCodeItIsIsNamed)
{
    expectHang("hangs_in_factory", "within 1 s while the services were being loaded\n"
                                   "  why: its code was called and has not come back");
}

TEST_F(Hang, GivenStaticDestructor_ThenTheBundleIsNamed)
{
    expectHang("hangs_in_destructor", "within 1 s while the process was ending\n"
                                      "  why: its code was called and has not come back");
}

TEST_F(Hang, GivenAllSignalsBlocked_ThenTheStepIsNamed)
{
    const ProgramResult result = runWith("hangsBlocked_in_factory", {"--timeout", "0.5"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "ostrel-host: error: the limit of 0.5 s was reached while the services were being loaded\n"
              "  why: something has not come back, and nothing tells what it is\n"
              "  do:  look with a debugger at what the process waits for, or give it more time by --timeout\n");
}

TEST_F(Hang, GivenBundlesThatEachTakeLessThanTheLimit_ThenTheirSumMayBeMore)
{
    add("starts_another", "a.so");
    add("naps_in_constructor", "b.so");
    add("naps_in_start", "c.so");
    add("naps_in_stop", "d.so");
    add("naps_in_emptyFactory", "e.so"); // once when services are loaded, and once for the report

    const ProgramResult result = run({"--timeout", "1"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

} // namespace ostrel::test
