#include "cli/CanonicalReport.h"

#include <gtest/gtest.h>

namespace ostrel::test {

TEST(CanonicalReport, GivenHeadersInAnotherOrder_ThenTheReportsAreEqual)
{
    EXPECT_EQ(canonicalReport("Bundles:\n    b, 1, ACTIVE\n        x = 1\n        a = 2\n"),
              canonicalReport("Bundles:\n    b, 1, ACTIVE\n        a = 2\n        x = 1\n"));
}

TEST(CanonicalReport, GivenNestedEntriesInAnotherOrder_ThenTheReportsAreEqual)
{
    EXPECT_EQ(canonicalReport("        zq = {a : [{b : 1, c : 2},{d : 3}], e : {f : 4}}\n"),
              canonicalReport("        zq = {e : {f : 4}, a : [{d : 3},{c : 2, b : 1}]}\n"));
}

TEST(CanonicalReport, GivenAnEntryInAnotherMap_ThenTheReportsDiffer)
{
    EXPECT_NE(canonicalReport("        zq = {a : [{b : 1, c : 2},{d : 3}]}\n"),
              canonicalReport("        zq = {a : [{b : 1},{c : 2, d : 3}]}\n"));
}

TEST(CanonicalReport, GivenAHeaderOfAnotherBundle_ThenTheReportsDiffer)
{
    EXPECT_NE(canonicalReport("Bundles:\n    b, 1, ACTIVE\n        x = 1\n    c, 2, ACTIVE\n"),
              canonicalReport("Bundles:\n    b, 1, ACTIVE\n    c, 2, ACTIVE\n        x = 1\n"));
}

TEST(CanonicalReport, GivenSectionsInAnotherOrder_ThenTheReportsDiffer)
{
    EXPECT_NE(canonicalReport("Bundles:\nBundle services:\n"), canonicalReport("Bundle services:\nBundles:\n"));
}

} // namespace ostrel::test
