#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "platform/Registry.h"
#include "support/MadeFonts_posix.h"

namespace brackwell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char HkeyLocalMachineText[] = "2147483650";
constexpr char FontsKey[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";

/// Fonts of the free base set, as they are installed for the tests.
constexpr char OpenTypeFont[] = "/usr/share/fonts/opentype/urw-base35/Z003-MediumItalic.otf";
constexpr char Type1Font[] = "/usr/share/fonts/type1/urw-base35/Z003-MediumItalic.t1";

std::string Content(const char* path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path << " is not installed: tools/set-up test";
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The registry's key of installed fonts, out of a made folder of fonts.
class InstalledFonts : public testing::Test {
 protected:
  KeyValues List() {
    Fonts.Use();
    return RegEnumKeyValues(HkeyLocalMachineText, FontsKey);
  }
  std::vector<std::string> Names() { return List().Names; }

  MadeFonts Fonts;
};

TEST_F(InstalledFonts, None) {
  const KeyValues values = List();
  EXPECT_EQ(values.Count, 0);
  EXPECT_THAT(values.Names, IsEmpty());
}

TEST_F(InstalledFonts, AFontIsATextWithItsFile) {
  const std::string file = Fonts.AddFamily("a.ttf", "Made Sans");
  const KeyValues values = List();
  EXPECT_EQ(values.Count, 1);
  EXPECT_THAT(values.Names, ElementsAre("Made Sans (TrueType)"));
  EXPECT_THAT(values.Types, ElementsAre(1U));
  EXPECT_THAT(values.Data, ElementsAre(file));
}

TEST_F(InstalledFonts, TheKindStandsInBrackets) {
  Fonts.AddFamily("a.ttf", "Made Sans");
  Fonts.Add("b.otf", Content(OpenTypeFont));
  EXPECT_THAT(Names(), ElementsAre("Made Sans (TrueType)", "Z003 (OpenType)"));
}

TEST_F(InstalledFonts, OutdatedKindsCountWhereThereIsNoOther) {
  Fonts.Add("a.t1", Content(Type1Font));
  EXPECT_THAT(Names(), ElementsAre("Z003 (Type 1)"));
  const std::string file = Fonts.Add("b.otf", Content(OpenTypeFont));
  const KeyValues values = List();
  EXPECT_THAT(values.Names, ElementsAre("Z003 (OpenType)"));
  EXPECT_THAT(values.Data, ElementsAre(file));
}

TEST_F(InstalledFonts, InTheOrderOfTheNamesWhateverTheFiles) {
  Fonts.AddFamily("1.ttf", "beta");
  Fonts.AddFamily("2.ttf", "Gamma");
  Fonts.AddFamily("3.ttf", "Alpha");
  EXPECT_THAT(Names(), ElementsAre("Alpha (TrueType)", "beta (TrueType)", "Gamma (TrueType)"));
}

TEST_F(InstalledFonts, AFamilyIsOneValueWithTheFileOfItsPlainestFace) {
  using Font = MadeFont;
  Fonts.Add("a.ttf", Font{.Names = {{Font::Family, "Made"}, {Font::Style, "Bold"}}, .Weight = 700});
  const std::string regular =
      Fonts.Add("b.ttf", Font{.Names = {{Font::Family, "Made"}, {Font::Style, "Regular"}}});
  Fonts.Add("c.ttf", Font{.Names = {{Font::Family, "Made"}, {Font::Style, "Light"}}, .Weight = 300});
  const KeyValues values = List();
  EXPECT_THAT(values.Names, ElementsAre("Made (TrueType)"));
  EXPECT_THAT(values.Data, ElementsAre(regular));
}

TEST_F(InstalledFonts, NamesThatDifferInCaseAreOneFamily) {
  Fonts.AddFamily("b.ttf", "MADE");
  const std::string first = Fonts.AddFamily("a.ttf", "Made");
  const KeyValues values = List();
  EXPECT_THAT(values.Names, ElementsAre("Made (TrueType)"));
  EXPECT_THAT(values.Data, ElementsAre(first));
}

TEST_F(InstalledFonts, AFaceCanHaveANameOfItsOwnBesideItsFamilys) {
  using Font = MadeFont;
  const std::string regular = Fonts.AddFamily("a.ttf", "Made");
  const std::string light = Fonts.Add("b.ttf", Font{.Names = {{Font::Family, "Made Light"},
                                                              {Font::Style, "Regular"},
                                                              {Font::TypographicFamily, "Made"}},
                                                    .Weight = 300});
  const KeyValues values = List();
  EXPECT_THAT(values.Names, ElementsAre("Made (TrueType)", "Made Light (TrueType)"));
  EXPECT_THAT(values.Data, ElementsAre(regular, light));
}

TEST_F(InstalledFonts, OtherLanguagesCountWhereThereIsNoEnglishName) {
  using Font = MadeFont;
  Fonts.Add("a.ttf", Font{.Names = {{Font::Family, "Gemacht", Font::German}, {Font::Family, "Made"}}});
  Fonts.Add("b.ttf", Font{.Names = {{Font::Family, "Nur deutsch", Font::German}}});
  EXPECT_THAT(Names(), ElementsAre("Made (TrueType)", "Nur deutsch (TrueType)"));
}

TEST_F(InstalledFonts, NamesOfAnyCharacters) {
  Fonts.AddFamily("a.ttf", "<script>\";'&");
  Fonts.AddFamily("b.ttf", "Gr\xc3\xbc\xc3\x9f \xe6\x98\x8e\xe6\x9c\x9d \xf0\x9f\x98\x80");
  Fonts.AddFamily("c.ttf", "Odd (Name)");
  Fonts.AddFamily("d.ttf", std::string(5000, 'x'));
  EXPECT_THAT(Names(), ElementsAre("<script>\";'& (TrueType)",
                                   "Gr\xc3\xbc\xc3\x9f \xe6\x98\x8e\xe6\x9c\x9d \xf0\x9f\x98\x80 (TrueType)",
                                   "Odd (Name) (TrueType)", std::string(5000, 'x') + " (TrueType)"));
}

TEST_F(InstalledFonts, WhatIsNoFontOrADamagedOneIsPassedOver) {
  const std::string whole = MadeFont{.Names = {{MadeFont::Family, "Whole"}}}.File();
  Fonts.Add("a.ttf", "no font");
  Fonts.Add("b.ttf", "");
  Fonts.Add("c.ttf", whole.substr(0, 200));
  Fonts.Add("d.ttf", whole);
  EXPECT_THAT(Names(), ElementsAre("Whole (TrueType)"));
}

TEST_F(InstalledFonts, AFontWithoutANameGoesByItsFile) {
  Fonts.Add("nameless.ttf", MadeFont{});
  EXPECT_THAT(Names(), ElementsAre("nameless (TrueType)"));
}

TEST_F(InstalledFonts, TenThousand) {
  for (int i = 0; i < 10000; ++i) Fonts.AddFamily(std::to_string(i) + ".ttf", "Made " + std::to_string(i));
  EXPECT_EQ(List().Count, 10000);
}

TEST_F(InstalledFonts, AreReadSinglyToo) {
  const std::string file = Fonts.AddFamily("a.ttf", "Made Sans");
  Fonts.Use();
  std::string value;
  EXPECT_TRUE(GetKeyValue(HkeyLocalMachine, FontsKey, "made sans (truetype)", value));
  EXPECT_EQ(value, file);
  EXPECT_FALSE(GetKeyValue(HkeyLocalMachine, FontsKey, "Made Sans", value));
}

TEST_F(InstalledFonts, OnlyTheMachinesKeyHasThem) {
  Fonts.AddFamily("a.ttf", "Made Sans");
  Fonts.Use();
  EXPECT_EQ(RegEnumKeyValues("-2147483646", "software\\microsoft\\windows nt\\currentversion\\FONTS").Count,
            1);
  EXPECT_EQ(RegEnumKeyValues("2147483649", FontsKey).Count, 0);
  EXPECT_EQ(RegEnumKeyValues(HkeyLocalMachineText, "SOFTWARE").Count, 0);
}

}  // namespace
}  // namespace brackwell
