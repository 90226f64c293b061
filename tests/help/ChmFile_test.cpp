#include "help/ChmFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

#include "help/HelpText.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The help file as it was built.
const std::string& BuiltFile() {
  static const std::string content = ReadFile(BRACKWELL_HELP_FILE);
  return content;
}

const ChmFile& Help() {
  static const std::optional<ChmFile> file = ChmFile::Open(BRACKWELL_HELP_FILE);
  if (!file) throw std::runtime_error("the built help file cannot be read");
  return *file;
}

/// The values of an attribute in a page, as "a.html" of href="a.html".
std::vector<std::string> Values(std::string_view page, const std::string& attribute) {
  std::vector<std::string> values;
  const std::string start = attribute + "=\"";
  for (std::size_t at = page.find(start); at != std::string_view::npos; at = page.find(start, at)) {
    at += start.size();
    values.emplace_back(page.substr(at, page.find('"', at) - at));
  }
  return values;
}

// --- the built file --------------------------------------------------------------------------------

TEST(BuiltHelp, BeginsWithTheWelcome) {
  EXPECT_EQ(Help().Contents().front(),
            (HelpEntry{.Depth = 0, .Title = "Welcome to Brackwell", .Topic = "welcome.html"}));
}

TEST(BuiltHelp, HasChaptersWithTopicsBelow) {
  EXPECT_THAT(Help().Contents(),
              Contains(HelpEntry{.Depth = 0, .Title = "Directory comparison", .Topic = "compare.html"}));
  EXPECT_THAT(Help().Contents(),
              Contains(HelpEntry{.Depth = 1, .Title = "Fixing differences", .Topic = "compare-fix.html"}));
}

TEST(BuiltHelp, EveryEntryOfTheContentsIsAPageOfThatTitle) {
  for (const HelpEntry& entry : Help().Contents()) {
    const std::string* page = Help().Find(entry.Topic);
    ASSERT_TRUE(page) << entry.Topic;
    EXPECT_EQ(PageTitle(*page), entry.Title);
    EXPECT_THAT(*page, testing::HasSubstr("<h1>" + entry.Title + "</h1>"));
  }
}

TEST(BuiltHelp, EveryPageIsInTheContentsOnce) {
  std::vector<std::string> listed;
  for (const HelpEntry& entry : Help().Contents()) listed.push_back(entry.Topic);
  EXPECT_THAT(listed, testing::UnorderedElementsAreArray(Help().Topics()));
}

TEST(BuiltHelp, EveryLinkLeadsToAPage) {
  for (const std::string& topic : Help().Topics())
    for (const std::string& link : Values(*Help().Find(topic), "href"))
      EXPECT_TRUE(Help().Find(link)) << topic << " links to " << link;
}

TEST(BuiltHelp, EveryPictureIsThereAndWhole) {
  std::size_t pictures = 0;
  for (const std::string& topic : Help().Topics()) {
    for (const std::string& name : Values(*Help().Find(topic), "src")) {
      const std::string* picture = Help().Find(name);
      ASSERT_TRUE(picture) << topic << " shows " << name;
      EXPECT_EQ(*picture, ReadFile(BRACKWELL_HELP_SOURCES "/" + name)) << name;
      EXPECT_EQ(picture->substr(0, 8), "\x89PNG\r\n\x1a\n") << name;
      ++pictures;
    }
  }
  EXPECT_GE(pictures, std::size_t{10});
}

TEST(BuiltHelp, EveryPictureHasAText) {
  for (const std::string& topic : Help().Topics())
    EXPECT_THAT(Values(*Help().Find(topic), "alt"), Not(Contains(IsEmpty()))) << topic;
}

TEST(BuiltHelp, TheIndexIsSortedAndLeadsToPages) {
  std::vector<std::string> keywords;
  std::set<std::string> indexed;
  for (const HelpEntry& entry : Help().Index()) {
    EXPECT_TRUE(Help().Find(entry.Topic)) << entry.Title;
    std::string upper = entry.Title;
    std::ranges::transform(upper, upper.begin(), [](unsigned char c) { return std::toupper(c); });
    keywords.push_back(upper);
    indexed.insert(entry.Topic);
  }
  EXPECT_TRUE(std::ranges::is_sorted(keywords));
  EXPECT_EQ(indexed.size(), Help().Topics().size()) << "every page has a keyword";
}

TEST(BuiltHelp, IsFoundByItsWords) {
  const std::vector<HelpHit> hits = Help().Search("tick fix source");
  ASSERT_THAT(hits, Not(IsEmpty()));
  EXPECT_EQ(hits.front().Topic, "compare-fix.html");
}

TEST(BuiltHelp, HasTheFullTextSearchOfTheSystemsViewer) {
  EXPECT_THAT(BuiltFile(), testing::HasSubstr("$FIftiMain"));
}

// --- damaged ones ----------------------------------------------------------------------------------

class DamagedHelp : public testing::Test {
 protected:
  /// Whether it opens; if so, everything in it is looked at.
  bool Opens(const std::string& content) {
    mTree.File("help.chm", content);
    const std::optional<ChmFile> file = ChmFile::Open(mTree.Path("help.chm"));
    if (!file) return false;
    file->Search("file");
    for (const HelpEntry& entry : file->Index()) static_cast<void>(file->Find(entry.Topic));
    EXPECT_THAT(file->Contents(), Not(IsEmpty()));
    return true;
  }

  TempTree mTree;
};

TEST_F(DamagedHelp, TheWholeFileOpens) { EXPECT_TRUE(Opens(BuiltFile())); }

TEST_F(DamagedHelp, MissingEmptyOrSomethingElse) {
  EXPECT_FALSE(ChmFile::Open(mTree.Path("none.chm")));
  EXPECT_FALSE(ChmFile::Open(mTree.Path()));
  EXPECT_FALSE(Opens(""));
  EXPECT_FALSE(Opens("ITSF"));
  EXPECT_FALSE(Opens(std::string(100'000, '\0')));
  EXPECT_FALSE(Opens(std::string(100'000, '\xFF')));
  EXPECT_FALSE(Opens("<html>no help</html>"));
}

/// Where only the end is missing, which holds the system viewer's tables, every page may still be there.
TEST_F(DamagedHelp, CutOffAnywhereItIsWholeOrDoesNotOpen) {
  const std::size_t size = BuiltFile().size();
  int opened = 0;
  for (std::size_t part = 0; part < 64; ++part) {
    mTree.File("help.chm", BuiltFile().substr(0, size * part / 64));
    const std::optional<ChmFile> file = ChmFile::Open(mTree.Path("help.chm"));
    if (!file) continue;
    ++opened;
    for (const std::string& topic : Help().Topics()) {
      ASSERT_TRUE(file->Find(topic)) << part << topic;
      EXPECT_EQ(*file->Find(topic), *Help().Find(topic)) << part;
    }
  }
  EXPECT_LE(opened, 8);
  for (const std::size_t length : {1, 4, 0x37, 0x38, 0x58, 0x60, 0x70, 0xB4, 0x200})
    EXPECT_FALSE(Opens(BuiltFile().substr(0, length))) << length;
}

/// A changed picture or letter cannot be told from the right one; nothing worse may come of it.
TEST_F(DamagedHelp, RandomBytesNeverBringItDown) {
  std::mt19937 random(20260);
  int opened = 0;
  for (int round = 0; round < 300; ++round) {
    std::string content = BuiltFile();
    // Every other time in the headers, which say where everything is and how long.
    const std::size_t size = round % 2 == 0 ? content.size() : std::min<std::size_t>(content.size(), 12'000);
    for (int count = 1 + round % 20; count > 0; --count)
      content[random() % size] = static_cast<char>(round % 3 == 0 ? 0xFF : random());
    opened += Opens(content);
  }
  EXPECT_LT(opened, 300);
}

/// The numbers from which the decompressor divides and allocates.
TEST_F(DamagedHelp, ZeroAndHugeNumbersInEachHeader) {
  for (const char* name : {"ITSF", "ITSP", "PMGL", "LZXC"}) {
    const std::size_t begin = BuiltFile().find(name);
    ASSERT_NE(begin, std::string::npos) << name;
    for (std::size_t offset = 4; offset < 0x60; offset += 4) {
      for (const char byte : {'\0', '\x7F', '\xFF'}) {
        std::string content = BuiltFile();
        std::fill_n(content.begin() + static_cast<std::ptrdiff_t>(begin + offset), 4, byte);
        Opens(content);
      }
    }
  }
}

}  // namespace
}  // namespace brackwell
