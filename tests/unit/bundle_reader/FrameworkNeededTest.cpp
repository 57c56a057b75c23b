#include "bundle_reader/elf/FrameworkNeeded.h"

#include <gtest/gtest.h>

using namespace ostrel::bundle_reader;

namespace {

const std::string ofEmbedded{"libostrel_framework.so.1"};
const std::string ofInstalled{"libCppMicroServices.so.3.8.4"};

TEST(FrameworkNamed, GivenFileName_WhenAsked_ThenItsBeginningDecides)
{
    EXPECT_EQ(frameworkNamed(ofEmbedded), Framework::embedded);
    EXPECT_EQ(frameworkNamed("libostrel_framework.so"), Framework::embedded);
    EXPECT_EQ(frameworkNamed(ofInstalled), Framework::installed);
    EXPECT_EQ(frameworkNamed("libCppMicroServices.so"), Framework::installed);
    EXPECT_EQ(frameworkNamed("libCppMicroServices"), Framework::none);
    EXPECT_EQ(frameworkNamed("xlibCppMicroServices.so"), Framework::none);
    EXPECT_EQ(frameworkNamed("libostrel_us_container.so.1"), Framework::none);
    EXPECT_EQ(frameworkNamed(""), Framework::none);
}

TEST(BuiltFor, GivenLibraryOfFramework_WhenAsked_ThenItAndItsNameAreTold)
{
    const BuiltFor embedded = builtFor({"libc.so.6", ofEmbedded});
    EXPECT_EQ(embedded.framework, Framework::embedded);
    EXPECT_EQ(embedded.needed, ofEmbedded);

    const BuiltFor installed = builtFor({ofInstalled, "libc.so.6"});
    EXPECT_EQ(installed.framework, Framework::installed);
    EXPECT_EQ(installed.needed, ofInstalled);
}

TEST(BuiltFor, GivenNoLibraryOfFramework_WhenAsked_ThenNothingIsTold)
{
    EXPECT_EQ(builtFor({"libc.so.6"}).framework, Framework::none);
    EXPECT_EQ(builtFor({"libc.so.6"}).needed, "");
    EXPECT_EQ(builtFor({}).framework, Framework::none);
}

TEST(BuiltFor, GivenLibrariesOfBoth_WhenAsked_ThenTheFirstIsToldUnlessExcepted)
{
    EXPECT_EQ(builtFor({ofEmbedded, ofInstalled}).framework, Framework::embedded);
    EXPECT_EQ(builtFor({ofEmbedded, ofInstalled}, Framework::embedded).framework, Framework::installed);
    EXPECT_EQ(builtFor({ofInstalled, ofEmbedded}, Framework::embedded).needed, ofInstalled);
    EXPECT_EQ(builtFor({ofEmbedded}, Framework::embedded).framework, Framework::none);
}

} // namespace
