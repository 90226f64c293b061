#include "platform/TextFile.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/ErrorNumber.h"
#include "support/FailingFileSystem.h"
#include "support/TempTree.h"

// Reading a file in pieces and rewriting it, as every system does it.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

class TextFileTest : public testing::Test {
 protected:
  std::unique_ptr<TextReader> Open(const std::string& name) { return mFiles->OpenTextFile(mTree.Path(name)); }

  int RewriteError(const std::string& name, const std::string& content) {
    return ErrorNumber([&] {
      const auto writer = Open(name)->Rewrite();
      writer->Write(content);
      writer->Close();
    });
  }

  void Append(const std::string& name, const std::string& text) {
    std::ofstream(mTree.Path(name), std::ios::binary | std::ios::app) << text;
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using Reading = TextFileTest;
using Rewriting = TextFileTest;

TEST_F(Reading, GoesPieceByPieceAndFromTheStartAgain) {
  mTree.File("file", "0123456789");
  const auto reader = Open("file");
  EXPECT_EQ(reader->Size(), 10U);
  char piece[8] = {};
  EXPECT_EQ(reader->Read(piece, 7), 7U);
  EXPECT_STREQ(piece, "0123456");
  EXPECT_EQ(reader->ReadAll(), "789");
  EXPECT_EQ(reader->Read(piece, 7), 0U);
  EXPECT_EQ(reader->ReadAll(), "");
  reader->Rewind();
  EXPECT_EQ(reader->ReadAll(), "0123456789");
}

TEST_F(Reading, AnEmptyFileHasNothingToRead) {
  mTree.File("empty");
  const auto reader = Open("empty");
  char piece[8];
  EXPECT_EQ(reader->Size(), 0U);
  EXPECT_EQ(reader->Read(piece, 8), 0U);
}

TEST_F(Reading, EndsWhereTheFileEndedWhenItWasOpened) {
  mTree.File("log", "old");
  const auto reader = Open("log");
  char piece[2];
  EXPECT_EQ(reader->Read(piece, 2), 2U);
  Append("log", " and new");
  EXPECT_EQ(reader->ReadAll(), "d");
  EXPECT_EQ(reader->Read(piece, 2), 0U);
  EXPECT_EQ(Open("log")->ReadAll(), "old and new");
}

TEST_F(Reading, OfAFileThatShrinksEndsEarly) {
  mTree.File("file", "0123456789");
  const auto reader = Open("file");
  std::filesystem::resize_file(mTree.Path("file"), 4);
  EXPECT_EQ(reader->ReadAll(), "0123");
}

TEST_F(Rewriting, PutsNewContentInPlaceWhenClosed) {
  mTree.File("file", "the old text");
  const auto reader = Open("file");
  const auto writer = reader->Rewrite();
  char piece[4] = {};
  EXPECT_EQ(reader->Read(piece, 3), 3U);
  writer->Write(std::string_view(piece, 3));
  writer->Write("");
  writer->Write(" new");
  EXPECT_EQ(mTree.Read("file"), "the old text");
  writer->Close();
  EXPECT_EQ(mTree.Read("file"), "the new");
  EXPECT_EQ(mTree.List(), Names{"file"});
}

TEST_F(Rewriting, TakesAnyContent) {
  mTree.File("file", "old");
  for (const std::string& content :
       {std::string(3 << 20, 'l'), std::string("\0\xff\r\n", 4), std::string()}) {
    EXPECT_EQ(RewriteError("file", content), 0);
    EXPECT_EQ(mTree.Read("file"), content);
  }
  EXPECT_EQ(RewriteError("file", "of an empty one"), 0);
  EXPECT_EQ(mTree.Read("file"), "of an empty one");
}

TEST_F(Rewriting, TakesAnyName) {
  const std::string name = "ä ö " + std::string(180, 'n') + ".txt";
  mTree.File(name, "old");
  EXPECT_EQ(RewriteError(name, "new"), 0);
  EXPECT_EQ(mTree.Read(name), "new");
  EXPECT_EQ(mTree.List(), Names{name});
}

TEST_F(Rewriting, CountsAsAChange) {
  mTree.File("file", "old", 10);
  const auto before = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_GE(mFiles->GetFile(mTree.Path("file")).DateLastModified, before - std::chrono::seconds(1));
}

TEST_F(Rewriting, ThatIsDroppedLeavesNothing) {
  mTree.File("file", "old", 10);
  Open("file")->Rewrite()->Write("new");
  EXPECT_EQ(mTree.Read("file"), "old");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("file")).DateLastModified, TempTree::Time(10));
  EXPECT_EQ(mTree.List(), Names{"file"});
}

TEST_F(Rewriting, OfAReadOnlyFileIsRefusedAtOnce) {
  mTree.File("kept", "old");
  mTree.SetReadOnly("kept");
  const auto reader = Open("kept");
  EXPECT_EQ(ErrorNumber([&] { reader->Rewrite(); }), 70);
  EXPECT_EQ(reader->ReadAll(), "old");
  EXPECT_EQ(mTree.List(), Names{"kept"});
}

TEST_F(Rewriting, KeepsWhatOthersHaveWrittenMeanwhile) {
  mTree.File("before", "old");
  mTree.File("between", "old");
  const auto early = Open("before");
  Append("before", " and more");
  EXPECT_EQ(ErrorNumber([&] {
              const auto writer = early->Rewrite();
              writer->Write("new");
              writer->Close();
            }),
            75);
  const auto writer = Open("between")->Rewrite();
  writer->Write("new");
  Append("between", " and more");
  EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 75);
  EXPECT_EQ(mTree.Read("before"), "old and more");
  EXPECT_EQ(mTree.Read("between"), "old and more");
  EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 75);
}

TEST_F(Rewriting, DoesNotBringBackAFileThatWasRemoved) {
  mTree.File("file", "old");
  const auto reader = Open("file");
  const auto writer = reader->Rewrite();
  writer->Write("new");
  std::filesystem::rename(mTree.Path("file"), mTree.Path("moved"));
  EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 75);
  EXPECT_EQ(mTree.Read("moved"), "old");
  EXPECT_FALSE(mTree.Exists("file"));
}

TEST_F(Rewriting, TicksWhileAFileOfSeveralNamesIsCopied) {
  const std::string content(4 << 20, 'n');
  mTree.File("one", std::string(4 << 20, 'o'));
  std::filesystem::create_hard_link(mTree.Path("one"), mTree.Path("two"));
  int ticks = 0;
  const auto writer = Open("one")->Rewrite([&ticks] { ++ticks; });
  writer->Write(content);
  writer->Close();
  EXPECT_GE(ticks, 16);
  EXPECT_TRUE(mTree.Read("two") == content);
}

TEST_F(Rewriting, KeepsAllNamesOfAFile) {
  for (const std::string& content :
       {std::string("longer than the old one"), std::string("s"), std::string()}) {
    mTree.Folder("other");
    mTree.File("one", "the old text");
    std::filesystem::create_hard_link(mTree.Path("one"), mTree.Path("other/two"));
    EXPECT_EQ(RewriteError("one", content), 0);
    EXPECT_EQ(mTree.Read("one"), content);
    EXPECT_EQ(mTree.Read("other/two"), content);
    mTree.Remove("other");
  }
  EXPECT_EQ(mTree.List(), Names{"one"});
}

// --- Whatever fails, the file is as it was

TEST_F(Rewriting, ThatFailsAnywhereLeavesTheOldFile) {
  const auto rewrite = [&](FailingFileSystem& files) {
    const auto reader = files.OpenTextFile(mTree.Path("file"));
    char piece[4];
    reader->Read(piece, sizeof piece);
    reader->Rewind();
    const std::string content = reader->ReadAll();
    const auto writer = reader->Rewrite();
    writer->Write("new ");
    writer->Write(content);
    writer->Close();
  };
  mTree.File("file", "text", 10);
  constexpr int Calls = 8;
  for (int failing = 1; failing <= Calls; ++failing) {
    FailingFileSystem files(failing);
    EXPECT_EQ(ErrorNumber([&] { rewrite(files); }), 61) << failing;
    EXPECT_EQ(mTree.Read("file"), "text") << failing;
    EXPECT_EQ(mTree.List(), Names{"file"}) << failing;
  }
  FailingFileSystem files(Calls + 1);
  rewrite(files);
  EXPECT_EQ(files.Calls(), Calls);
  EXPECT_EQ(mTree.Read("file"), "new text");
}

}  // namespace
}  // namespace brackwell
