#include "rename/RenameForecast.h"

#include "rename/RenamedFolder.h"

namespace brackwell {
namespace {

/// The forecasts of a made folder: "new name: what becomes of it, wrapped".
class RenameForecast : public testing::Test {
 protected:
  Lines Forecasts(const std::string& prefix, const std::string& start, bool preserve = false) {
    return Forecasts(mFolder.List(), prefix, start, preserve);
  }

  Lines Forecasts(WorkList list, const std::string& prefix, const std::string& start, bool preserve = false) {
    FolderFiles place(mFolder.FileSystem);
    try {
      place.Read(mFolder.Tree.Path(preserve ? "images/Renamed Files" : "images"));
    } catch (const FileSystemError&) {
    }
    const Naming naming = ReadNaming(prefix, start).value();
    AssignNewNames(list, naming);
    const auto forecasts = Forecast(list, naming, preserve, place.Taken());
    Lines lines;
    for (std::size_t item = 0; item < list.size(); ++item)
      lines.push_back(NewName(naming, list[item]) + ": " + Shown(forecasts[item]));
    return lines;
  }

  static std::string Shown(const NameForecast& forecast) {
    static const Lines fates{"given",    "no name",      "taken",       "given before",
                             "replaces", "replaces row", "is replaced", "not copied"};
    return fates[static_cast<std::size_t>(forecast.What)] + (forecast.IsWrapped ? ", wrapped" : "");
  }

  RenamedFolder mFolder;
};

TEST_F(RenameForecast, FreeNamesAreGiven) {
  mFolder.Files({"a.jpg", "b.jpg"});
  EXPECT_EQ(Forecasts("x", "1"), (Lines{"x1.JPG: given", "x2.JPG: given"}));
}

TEST_F(RenameForecast, ANameThatExistsIsTakenInWhateverCase) {
  mFolder.Files({"a.jpg", "b.jpg", "X1.jpg"});
  WorkList list = mFolder.List();
  list[2].Checked = false;
  EXPECT_EQ(Forecasts(list, "x", "1"), (Lines{"x1.JPG: taken", "x2.JPG: given", ": given"}));
}

TEST_F(RenameForecast, AFolderTakesANameToo) {
  mFolder.Files({"a"});
  mFolder.Tree.Folder("images/x1");
  EXPECT_EQ(Forecasts("x", "1"), (Lines{"x1: taken"}));
}

TEST_F(RenameForecast, AnUnlistedFileTakesItsName) {
  mFolder.Files({"a.jpg", "x1.JPG"});
  WorkList list = mFolder.List();
  list.pop_back();
  EXPECT_EQ(Forecasts(list, "x", "1"), (Lines{"x1.JPG: taken"}));
}

TEST_F(RenameForecast, ANameIsFreeOnceItsBearerIsRenamed) {
  mFolder.Files({"x1.JPG", "x2.JPG"});
  EXPECT_EQ(Forecasts("x", "0"), (Lines{"x0.JPG: given", "x1.JPG: given"}));
  EXPECT_EQ(Forecasts("x", "2"), (Lines{"x2.JPG: taken", "x3.JPG: given"}));
}

TEST_F(RenameForecast, OnesOwnNameIsNotInTheWay) {
  mFolder.Files({"X1.jpg", "x2.JPG"});
  EXPECT_EQ(Forecasts("x", "1"), (Lines{"x1.JPG: given", "x2.JPG: given"}));
}

TEST_F(RenameForecast, AWrappedNumberMeetsTheOneBefore) {
  mFolder.Files({"a", "b", "c"});
  EXPECT_EQ(Forecasts("x", "9"), (Lines{"x9: given", "x0: given, wrapped", "x1: given, wrapped"}));
  mFolder.Files({"d", "e", "f", "g", "h", "i", "j", "k"});
  EXPECT_EQ(Forecasts("x", "1").back(), "x1: given before, wrapped");
}

TEST_F(RenameForecast, WhatIsNoFileNameIsSaid) {
  mFolder.Files({"a", "b"});
  EXPECT_EQ(Forecasts("c/", "1"), (Lines{"c/1: no name", "c/2: no name"}));
  EXPECT_EQ(Forecasts("com", "1", true), (Lines{"com1: no name", "com2: no name"}));
}

TEST_F(RenameForecast, CopiesMeetEarlierCopiesOnly) {
  mFolder.Files({"a.jpg", "b.jpg", "x1.JPG"});
  EXPECT_EQ(Forecasts("x", "1", true), (Lines{"x1.JPG: given", "x2.JPG: given", "x3.JPG: given"}));
  mFolder.Tree.File("images/Renamed Files/x2.JPG");
  mFolder.Tree.Folder("images/Renamed Files/x3.JPG");
  EXPECT_EQ(Forecasts("x", "1", true), (Lines{"x1.JPG: given", "x2.JPG: replaces", "x3.JPG: not copied"}));
}

TEST_F(RenameForecast, CopiesOfOneNameReplaceEachOther) {
  mFolder.Files({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k"});
  const Lines lines = Forecasts("x", "1", true);
  EXPECT_EQ(lines[0], "x1: is replaced");
  EXPECT_EQ(lines[1], "x2: given");
  EXPECT_EQ(lines[10], "x1: replaces row, wrapped");
}

TEST_F(RenameForecast, WhatIsFreeIsGivenWhateverBecomesOfTheOthers) {
  mFolder.Files({"a.jpg", "x1.JPG", "X3.jpg", "b", "x5", "c.jpg", "x7.JPG"});
  mFolder.Tree.Folder("images/x4");
  FolderFiles place(mFolder.FileSystem);
  place.Read(mFolder.Tree.Path("images"));
  int free = 0;
  int inTheWay = 0;
  for (const char* start : {"0", "1", "2", "3", "-3", "004", "9", "1e2"}) {
    for (const bool preserve : {false, true}) {
      for (std::size_t unticked = 0; unticked < 7; ++unticked) {
        WorkList list = mFolder.List();
        list[unticked].Checked = false;
        const Naming naming = ReadNaming("x", start).value();
        AssignNewNames(list, naming);
        if (AnyIsWrapped(list, naming)) continue;
        const auto forecasts = Forecast(list, naming, preserve, place.Taken());
        for (std::size_t item = 0; item < list.size(); ++item) {
          const bool isFree = IsFree(list[item], naming, place.Taken());
          ++(isFree ? free : inTheWay);
          EXPECT_FALSE(isFree && forecasts[item].IsWarning()) << start << ' ' << list[item].Name;
        }
      }
    }
  }
  EXPECT_GT(free, 0);
  EXPECT_GT(inTheWay, 0);
}

TEST_F(RenameForecast, AnyWrappedNumberIsFound) {
  mFolder.Files({"a", "b", "c"});
  const auto anyIsWrapped = [this](const char* start) {
    WorkList list = mFolder.List();
    const Naming naming = ReadNaming("x", start).value();
    AssignNewNames(list, naming);
    return AnyIsWrapped(list, naming);
  };
  EXPECT_FALSE(anyIsWrapped("7"));
  EXPECT_TRUE(anyIsWrapped("8"));
  EXPECT_FALSE(anyIsWrapped("08"));
}

TEST_F(RenameForecast, EveryFateButTheGoodOneHasItsText) {
  using Fate = NameForecast::Fate;
  std::map<std::string, int> texts;
  for (int fate = 1; fate <= static_cast<int>(Fate::NoPlace); ++fate)
    ++texts[WarningText({.What = static_cast<Fate>(fate)})];
  EXPECT_EQ(texts.size(), 8U);
  EXPECT_FALSE(texts.contains(""));
  EXPECT_EQ(WarningText({}), "");
  EXPECT_EQ(WarningText({.What = Fate::GivenBefore, .IsWrapped = true}),
            "A file further up gets this name, so this one keeps its old one.\n"
            "The number has outgrown its width, so only its last digits are kept.");
}

}  // namespace
}  // namespace brackwell
