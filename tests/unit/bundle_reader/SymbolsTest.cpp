#include "bundle_reader/elf/Symbols.h"

#include "support/TemporaryDirectory.h"
#include "unit/bundle_reader/SymbolFile.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <system_error>

namespace {

using namespace ostrel::test;
using ostrel::bundle_reader::exportedSymbols;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

class Symbols : public ::testing::Test {
protected:
    std::vector<std::string> found(const std::string& bytes, const std::string& prefix = "make_") const
    {
        return exportedSymbols(m_directory.write("file", bytes).string(), prefix);
    }

    /// The text of the exception without the path.
    std::string fault(const std::string& bytes) const
    {
        const std::string path = m_directory.write("file", bytes).string();
        try {
            exportedSymbols(path, "make_");
        } catch (const std::runtime_error& error) {
            const std::string what = error.what();
            return what.rfind(path + ": ", 0) == 0 ? what.substr(path.size() + 2) : what;
        }
        return {};
    }

    TemporaryDirectory m_directory;
};

const std::vector<DynamicSymbol> some{{"other"}, {"make_b"}, {"make_a"}, {"unmake_c"}};

/// The class and byte order of a file.
class SymbolsOfEachKind : public Symbols, public ::testing::WithParamInterface<std::pair<bool, bool>> {
protected:
    SymbolFile file{GetParam().first, GetParam().second};
};

TEST_P(SymbolsOfEachKind, GivenSymbols_WhenRead_ThenThoseOfThePrefixAreFound)
{
    EXPECT_THAT(found(file.bytes(some)), ElementsAre("make_a", "make_b"));
}

TEST_P(SymbolsOfEachKind, GivenSymbolsThatAreNotExported_WhenRead_ThenTheyAreNotFound)
{
    const std::string bytes = file.bytes({{"make_undefined", STB_GLOBAL, STV_DEFAULT, SHN_UNDEF},
                                          {"make_local", STB_LOCAL},
                                          {"make_hidden", STB_GLOBAL, STV_HIDDEN},
                                          {"make_internal", STB_GLOBAL, STV_INTERNAL},
                                          {"make_weak", STB_WEAK},
                                          {"make_unique", STB_GNU_UNIQUE},
                                          {"make_protected", STB_GLOBAL, STV_PROTECTED}});

    EXPECT_THAT(found(bytes), ElementsAre("make_protected", "make_unique", "make_weak"));
}

TEST_P(SymbolsOfEachKind, GivenNameThatIsTheEndOfAnother_WhenRead_ThenItIsFound)
{
    EXPECT_THAT(found(file.bytes({{"unmake_c"}, {"make_c", STB_GLOBAL, STV_DEFAULT, 1, true}})), ElementsAre("make_c"));
}

TEST_P(SymbolsOfEachKind, GivenCountThatIsTooBigForTheHeader_WhenRead_ThenSymbolsAreFound)
{
    file.countInFirstSection = true;

    EXPECT_THAT(found(file.bytes(some)), ElementsAre("make_a", "make_b"));
}

INSTANTIATE_TEST_SUITE_P(Kinds, SymbolsOfEachKind,
                         ::testing::Values(std::pair{false, false}, std::pair{false, true}, std::pair{true, false},
                                           std::pair{true, true}));

TEST_F(Symbols, GivenLibraryOfThisMachine_WhenRead_ThenItsExportsAreFound)
{
    // What it needs of another library is not among them.
    EXPECT_THAT(exportedSymbols(UNIT_PLAIN_LIBRARY, "unit"),
                ElementsAre("unitArchiveRoom", "unitInstalledRoom", "unitOtherRoom", "unitPlain"));
}

TEST_F(Symbols, GivenNameAcrossTheEdgeOfAWindow_WhenRead_ThenItIsFound)
{
    // The names are looked through 64 KiB at a time; they begin with a zero byte, and each ends with one.
    for (int place = 65536 - 8; place <= 65536 + 1; ++place) {
        const std::string before(static_cast<std::size_t>(place) - 2, 'x');

        EXPECT_THAT(found(SymbolFile{true, false}.bytes({{before}, {"make_a"}})), ElementsAre("make_a")) << place;
    }
}

TEST_F(Symbols, GivenManySymbols_WhenRead_ThenAllAreFound)
{
    std::vector<DynamicSymbol> symbols;
    std::vector<std::string> names;
    for (int i = 0; i < 4000; ++i) {
        names.push_back("make_" + std::to_string(10000 + i));
        symbols.push_back({names.back()});
    }

    EXPECT_EQ(found(SymbolFile{true, false}.bytes(symbols)), names);
}

TEST_F(Symbols, GivenVeryLongName_WhenRead_ThenItIsCut)
{
    const std::string name = "make_" + std::string(2 * ostrel::bundle_reader::exportedNameLimit, 'x');

    EXPECT_THAT(found(SymbolFile{true, false}.bytes({{name}})),
                ElementsAre(name.substr(0, ostrel::bundle_reader::exportedNameLimit)));
}

TEST_F(Symbols, GivenVeryManyNames_WhenRead_ThenTheFirstAreFound)
{
    std::vector<DynamicSymbol> symbols;
    for (std::size_t i = 0; i < ostrel::bundle_reader::exportedLimit + 10; ++i) {
        symbols.push_back({"make_" + std::to_string(i)});
    }

    EXPECT_EQ(found(SymbolFile{true, false}.bytes(symbols)).size(), ostrel::bundle_reader::exportedLimit);
}

TEST_F(Symbols, GivenFileWithoutSections_WhenRead_ThenThereAreNone)
{
    std::string bytes = SymbolFile{true, false}.bytes(some);
    bytes.replace(40, 8, 8, '\0');

    EXPECT_THAT(found(bytes), IsEmpty());
}

TEST_F(Symbols, GivenFileThatIsNoElf_WhenRead_ThenThatIsSaid)
{
    EXPECT_EQ(fault(""), "this is no ELF file");
    EXPECT_EQ(fault("PK\x03\x04 and more than an identification"), "this is no ELF file");
    std::string unknownClass = SymbolFile{true, false}.bytes(some);
    unknownClass[EI_CLASS] = 3;
    EXPECT_EQ(fault(unknownClass), "this is no ELF file");
}

TEST_F(Symbols, GivenMissingFile_WhenRead_ThenSystemErrorNamesIt)
{
    const std::string path = (m_directory.path() / "none").string();

    try {
        exportedSymbols(path, "make_");
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr(path));
    }
}

TEST_F(Symbols, GivenTablesThatReachPastTheEnd_WhenRead_ThenThatIsSaid)
{
    const auto pastTheEnd = [this](auto change) {
        SymbolFile file{true, false};
        change(file);
        EXPECT_EQ(fault(file.bytes(some)), "a table reaches past the end of the file");
    };

    pastTheEnd([](SymbolFile& file) { file.namesOffset = 1 << 20; });
    pastTheEnd([](SymbolFile& file) { file.namesOffset = ~std::uint64_t{0} - 100; });
    pastTheEnd([](SymbolFile& file) { file.namesSize = 1 << 20; });
    pastTheEnd([](SymbolFile& file) { file.namesSize = ~std::uint64_t{0} - 100; });
    pastTheEnd([](SymbolFile& file) { file.symbolsSize = 1 << 20; });
}

TEST_F(Symbols, GivenTablesThatContradictThemselves_WhenRead_ThenThatIsSaid)
{
    SymbolFile linkedToNothing{true, false};
    linkedToNothing.symbolsLink = 3;
    SymbolFile ofOtherEntries{false, true};
    ofOtherEntries.symbolSize = sizeof(Elf64_Sym);
    SymbolFile ofSmallSections{true, false};
    ofSmallSections.sectionSize = sizeof(Elf64_Shdr) - 1;

    EXPECT_EQ(fault(linkedToNothing.bytes(some)), "the table of dynamic symbols contradicts itself");
    EXPECT_EQ(fault(ofOtherEntries.bytes(some)), "the table of dynamic symbols contradicts itself");
    EXPECT_EQ(fault(ofSmallSections.bytes(some)), "the section header table has entries that are too small");
}

TEST_F(Symbols, GivenNameBehindTheNames_WhenRead_ThenItIsPassedOver)
{
    std::string bytes = SymbolFile{true, false}.bytes(some);
    const auto name = sizeof(Elf64_Ehdr) + std::string{"\0other\0make_b\0make_a\0unmake_c\0", 31}.size() +
                      2 * sizeof(Elf64_Sym); // of the symbol "make_b"
    bytes.replace(name, 4, "\xff\xff\xff\x7f");

    EXPECT_THAT(found(bytes), ElementsAre("make_a"));
}

TEST_F(Symbols, GivenAnyByteChangedOrTheFileCut_WhenRead_ThenNothingButRuntimeErrorsHappens)
{
    for (const bool wide : {false, true}) {
        const std::string whole = SymbolFile{wide, wide}.bytes(some);
        for (std::size_t i = 0; i < whole.size(); ++i) {
            for (const char c : {'\x00', '\x01', '\x7f', '\xff'}) {
                std::string changed = whole;
                changed[i] = c;
                EXPECT_NO_THROW(fault(changed)) << i;
            }
            EXPECT_NO_THROW(fault(whole.substr(0, i))) << i;
        }
    }
}

} // namespace
