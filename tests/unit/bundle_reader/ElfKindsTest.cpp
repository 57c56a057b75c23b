// Shared objects of both classes and byte orders, and headers that say odd things.
#include "bundle_reader/BundleFile.h"
#include "support/SmallElf.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

namespace {

struct Kind {
    bool wide;
    bool bigEndian;
};

class ElfKinds : public ::testing::TestWithParam<Kind> {
protected:
    SmallElf object() const { return {GetParam().wide, GetParam().bigEndian}; }

    /// With an archive in the section of the name.
    SmallElf linked(const std::string& section) const
    {
        SmallElf made = object();
        made.sections = {{".text", SHT_PROGBITS, "code"}, {section, SHT_PROGBITS, bundleZip("n")}};
        return made;
    }
};

TEST_P(ElfKinds, GivenObject_WhenRead_ThenItsNeedsAreTold)
{
    SmallElf made = object();
    made.needed = {"liba.so", "", "libb.so"};

    const Contents contents = inspect(made.bytes());

    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_FALSE(contents.truncated);
    EXPECT_THAT(contents.needed, ElementsAre("liba.so", "", "libb.so"));
}

TEST_P(ElfKinds, GivenNamesOutsideOfTheirTable_WhenRead_ThenTheyAreLeftOut)
{
    SmallElf made = object();
    made.neededShift = 1000;

    EXPECT_THAT(inspect(made.bytes()).needed, IsEmpty());
}

TEST_P(ElfKinds, GivenVeryManyNeeds_WhenRead_ThenThoseUpToABoundAreTold)
{
    SmallElf made = object();
    made.needed.assign(5000, "lib.so");

    EXPECT_EQ(inspect(made.bytes()).needed.size(), 4096U);
}

TEST_P(ElfKinds, GivenArchiveInASection_WhenTheNameIsOneOfTheTools_ThenItIsFound)
{
    for (const char* name : {".ostrel_bundle", ".us_resources"}) {
        const Contents contents = inspect(linked(name).bytes());
        EXPECT_THAT(contents.folders, ElementsAre(Field(&Folder::name, "n"))) << name;
    }
    for (const char* name : {".ostrel_bundles", ".ostrel_bundl", "", ".rodata"}) {
        EXPECT_EQ(inspect(linked(name).bytes()).archive, Archive::none) << name;
    }
}

TEST_P(ElfKinds, GivenNumbersInTheFirstSection_WhenRead_ThenTheyCount)
{
    SmallElf made = linked(".ostrel_bundle");
    made.numbersInFirstSection = true;

    const Contents contents = inspect(made.bytes());

    EXPECT_THAT(contents.needed, ElementsAre("libneeded.so"));
    EXPECT_THAT(contents.folders, ElementsAre(Field(&Folder::name, "n")));
}

TEST_P(ElfKinds, GivenEmptySectionOfTheTools_WhenRead_ThenThereIsNoArchive)
{
    SmallElf made = object();
    made.sections = {{".ostrel_bundle", SHT_PROGBITS, ""}};

    EXPECT_EQ(inspect(made.bytes()).archive, Archive::none);
}

TEST_P(ElfKinds, GivenManySectionsOfTheTools_WhenRead_ThenThoseUpToABoundCount)
{
    SmallElf made = object();
    for (int i = 0; i < 17; ++i) {
        made.sections.push_back({".ostrel_bundle", SHT_PROGBITS, bundleZip("n" + std::to_string(i))});
    }

    EXPECT_THAT(inspect(made.bytes()).folders, ElementsAre(Field(&Folder::name, "n15")));
}

TEST_P(ElfKinds, GivenTableWithEntriesThatAreTooSmall_WhenRead_ThenTheTextSaysSo)
{
    SmallElf made = linked(".ostrel_bundle");
    made.sectionEntrySize = 8;

    const Contents contents = inspect(made.bytes());

    EXPECT_TRUE(contents.truncated);
    EXPECT_EQ(contents.damage, "the section header table has entries that are too small");
}

INSTANTIATE_TEST_SUITE_P(Of, ElfKinds,
                         ::testing::Values(Kind{false, false}, Kind{false, true}, Kind{true, false}, Kind{true, true}));

TEST(ElfKind, GivenClassOrByteOrderThatThereIsNot_WhenRead_ThenItIsNoSharedObject)
{
    for (const std::size_t mark : {EI_CLASS, EI_DATA}) {
        std::string bytes = SmallElf{true, false}.bytes();
        bytes[mark] = 3;
        EXPECT_EQ(inspect(bytes).format, Format::other);
    }
}

} // namespace
