#include <algorithm>
#include <random>

#include "rename/RenameForecast.h"
#include "rename/RenamedFolder.h"

// Random folders, renamed by random plans: gaps, swaps, numbers that wrap, names that differ in case only,
// names that are taken, names that no file may have. Every content is found again, in its place.

namespace brackwell {
namespace {

constexpr bool IsCaseKept = PathSeparator == '/';  // where names in two cases are two files

/// By name, on Windows in upper case.
using Contents = std::map<std::string, std::string>;

std::string KeyOf(const std::string& name) { return IsCaseKept ? name : Upper(name); }

class RandomPlan {
 public:
  explicit RandomPlan(unsigned seed) : mRandom(seed) {}

  int Below(int bound) { return std::uniform_int_distribution<>(0, bound - 1)(mRandom); }
  std::string OneOf(const Lines& texts) {
    return texts[static_cast<std::size_t>(Below(static_cast<int>(texts.size())))];
  }

  /// From so small a stock that names meet those to come.
  std::string Name() {
    return OneOf({"x", "X", "pic", "Ä", "ä", "other"}) + OneOf({"", "0", "00"}) + std::to_string(Below(12)) +
           OneOf({".jpg", ".JPG", ".Jpg", ".gif", ""});
  }
  std::string Prefix() {
    return OneOf({"x", "x", "X", "pic", "PIC", "Ä", "ä", "x0", "a/", "..", "../", "a:", "\\", "."});
  }
  std::string Start() { return OneOf({"1", "1", "0", "9", "01", "08", "001", "-2", "5", "1e1", " 3"}); }

  void Shuffle(WorkList& list) {
    if (Below(3) != 0) return;
    std::shuffle(list.begin(), list.end(), mRandom);
  }

 private:
  std::mt19937 mRandom;
};

class RandomFolder : public RenamedFolder {
 public:
  explicit RandomFolder(unsigned seed) : mRandom(seed) {
    Tree.Folder("images/sub");
    for (int file = mRandom.Below(15); file >= 0; --file) {
      const std::string name = mRandom.Name();
      const auto sameName = [&](const auto& other) { return Upper(other.first) == Upper(name); };
      const bool isTwin = std::ranges::any_of(mBefore, sameName);
      if (isTwin && (!IsCaseKept || mBefore.contains(name) || mRandom.Below(3) != 0)) continue;
      const std::string content = "content " + std::to_string(file);
      Tree.File("images/" + name, content);
      mBefore[KeyOf(name)] = content;
    }
    mList = List();
    mRandom.Shuffle(mList);
    for (RenameItem& item : mList) item.Checked = mRandom.Below(5) != 0;
    mPrefix = mRandom.Prefix();
    mStart = mRandom.Start();
    mNaming = ReadNaming(mPrefix, mStart).value();
  }

  void AreRenamedAsIfOneFileAfterTheOther() {
    const Contents expected = ExpectedInPlace();
    Rename(mList, mPrefix, mStart);
    EXPECT_EQ(Now(), expected) << mPrefix << " " << mStart;
    EXPECT_EQ(expected.size(), mBefore.size());
    EXPECT_EQ(Tree.List().size(), mBefore.size() + 2);
  }

  void LoseNothingWhicheverCallFails() {
    const std::vector<std::string> before = AllContents();
    FailingFileSystem counting;
    Rename(counting, mList, mPrefix, mStart, false);
    EXPECT_EQ(AllContents(), before);
    for (int failAt = counting.Calls(); failAt > 0; --failAt) {
      FailingFileSystem failing(failAt, FileError::DeviceError);
      Rename(failing, List(), mPrefix, mStart, false);
      EXPECT_EQ(AllContents(), before) << "at call " << failAt;
    }
  }

  void BecomeWhatWasForecast() {
    const auto forecasts = Forecasts(false);
    Rename(mList, mPrefix, mStart);
    const Contents now = Now();
    for (std::size_t item = 0; item < mList.size(); ++item) {
      const bool isGiven = mList[item].Checked && forecasts[item].What == NameForecast::Fate::Given;
      const std::string name = isGiven ? NewName(mNaming, mList[item]) : mList[item].Name;
      const auto found = now.find(KeyOf(name));
      ASSERT_NE(found, now.end()) << name;
      EXPECT_EQ(found->second, mBefore[KeyOf(mList[item].Name)]) << name;
    }
  }

  void HaveTheCopiesThatWereForecast() {
    using Fate = NameForecast::Fate;
    Tree.File("images/Renamed Files/" + std::string(mPrefix == "x" ? "x2.JPG" : "x1.JPG"), "earlier");
    const Contents before = Now("images/Renamed Files");
    const auto forecasts = Forecasts(true);
    Rename(mList, mPrefix, mStart, true);
    const Contents now = Now("images/Renamed Files");
    for (std::size_t item = 0; item < mList.size(); ++item) {
      const std::string newName = NewName(mNaming, mList[item]);
      const Fate fate = forecasts[item].What;
      if (newName.empty() || fate == Fate::NoFileName) continue;
      const auto found = now.find(KeyOf(newName));
      ASSERT_NE(found, now.end()) << newName;
      EXPECT_EQ(found->second == mBefore[KeyOf(mList[item].Name)], fate != Fate::IsReplaced) << newName;
      if (fate == Fate::Given && IsCaseKept) {
        EXPECT_FALSE(before.contains(newName)) << newName;
      }
    }
  }

  void KeepTheirOriginalsAndGetTheLastCopyOfEachName() {
    Contents expected;
    for (const auto& [name, content] : PlannedCopies()) expected[name] = content;
    Rename(mList, mPrefix, mStart, true);
    EXPECT_EQ(Now("images/Renamed Files"), expected);
    EXPECT_EQ(Now("images/sub"), Contents{});
    Tree.Remove("images/Renamed Files");
    EXPECT_EQ(Now(), mBefore);
    EXPECT_EQ(Tree.List().size(), mBefore.size() + 2);
  }

  void KeepOriginalsAndOldCopiesWhicheverCallFails() {
    const auto planned = PlannedCopies();
    FailingFileSystem counting;
    Rename(counting, mList, mPrefix, mStart, true);
    const std::size_t count = Now("images/Renamed Files").size();
    for (int failAt = 1; failAt <= counting.Calls(); failAt += 1 + counting.Calls() / 6) {
      FailingFileSystem failing(failAt, FileError::DiskFull);
      Rename(failing, mList, mPrefix, mStart, true);
      const Contents copies = Now("images/Renamed Files");
      for (const auto& copy : copies)
        EXPECT_NE(std::ranges::find(planned, Copy(copy)), planned.end())
            << copy.first << " at call " << failAt;
      EXPECT_EQ(copies.size(), count) << "at call " << failAt;
    }
    Tree.Remove("images/Renamed Files");
    EXPECT_EQ(Now(), mBefore);
  }

 private:
  std::vector<NameForecast> Forecasts(bool preserve) {
    AssignNewNames(mList, mNaming);
    FolderFiles place(FileSystem);
    place.Read(Tree.Path(preserve ? "images/Renamed Files" : "images"));
    return Forecast(mList, mNaming, preserve, place.Taken());
  }

  Contents Now(const std::string& folder = "images") {
    Contents now;
    for (const std::string& name : Tree.List(folder))
      if (name.find('/') == std::string::npos) now[KeyOf(name)] = Tree.Read(folder + "/" + name);
    return now;
  }

  /// What renaming one after the other must come to, worked out the slow way.
  Contents ExpectedInPlace() {
    Contents names = mBefore;
    AssignNewNames(mList, mNaming);
    for (const RenameItem& item : mList) {
      const std::string newName = NewName(mNaming, item);
      if (!item.Checked || !IsFileName(newName)) continue;
      const auto isTaken = [&](const auto& other) {
        return other.first != KeyOf(item.Name) && Upper(other.first) == Upper(newName);
      };
      if (std::ranges::any_of(names, isTaken)) continue;
      auto file = names.extract(KeyOf(item.Name));
      file.key() = KeyOf(newName);
      names.insert(std::move(file));
    }
    return names;
  }

  using Copy = std::pair<std::string, std::string>;  // name and content

  /// In their order: of two with one name the second replaces the first.
  std::vector<Copy> PlannedCopies() {
    std::vector<Copy> copies;
    AssignNewNames(mList, mNaming);
    for (const RenameItem& item : mList)
      if (const std::string newName = NewName(mNaming, item); item.Checked && IsFileName(newName))
        copies.emplace_back(KeyOf(newName), mBefore[KeyOf(item.Name)]);
    return copies;
  }

  std::vector<std::string> AllContents(const std::string& folder = "images") {
    std::vector<std::string> contents;
    for (const auto& [name, content] : Now(folder)) contents.push_back(content);
    std::ranges::sort(contents);
    return contents;
  }

  RandomPlan mRandom;
  Contents mBefore;
  WorkList mList;
  std::string mPrefix;
  std::string mStart;
  Naming mNaming;
};

void ForManyFolders(void (RandomFolder::*property)()) {
  for (unsigned seed = 1; seed <= (IsCaseKept ? 120u : 12u); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomFolder folder(seed);
    (folder.*property)();
  }
}

TEST(RandomFolders, AreRenamedAsIfOneFileAfterTheOther) {
  ForManyFolders(&RandomFolder::AreRenamedAsIfOneFileAfterTheOther);
}
TEST(RandomFolders, LoseNothingWhicheverCallFails) {
  ForManyFolders(&RandomFolder::LoseNothingWhicheverCallFails);
}
TEST(RandomFolders, BecomeWhatWasForecast) { ForManyFolders(&RandomFolder::BecomeWhatWasForecast); }
TEST(RandomFolders, HaveTheCopiesThatWereForecast) {
  ForManyFolders(&RandomFolder::HaveTheCopiesThatWereForecast);
}
TEST(RandomFolders, KeepTheirOriginalsAndGetTheLastCopyOfEachName) {
  ForManyFolders(&RandomFolder::KeepTheirOriginalsAndGetTheLastCopyOfEachName);
}
TEST(RandomFolders, KeepOriginalsAndOldCopiesWhicheverCallFails) {
  ForManyFolders(&RandomFolder::KeepOriginalsAndOldCopiesWhicheverCallFails);
}

}  // namespace
}  // namespace brackwell
