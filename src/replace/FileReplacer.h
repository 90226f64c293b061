#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/TextFile.h"
#include "replace/PhraseSearch.h"
#include "replace/ReplaceRow.h"

namespace brackwell {

class FileSystemObject;

/// Opens a file to look into it. Nothing for what holds no bytes: empty files, pipes and the like. Throws
/// FileNotFound where a link has taken the file's place.
std::unique_ptr<TextReader> OpenUnlessEmpty(const FileSystemObject& files, const std::string& path);

/// A file's bytes, piece by piece and as often as wanted, in a buffer that serves one file after the other.
/// What the file grows by while it is read is left out.
class FilePieces {
 public:
  explicit FilePieces(std::size_t capacity);

  /// The first piece of a file that has been opened just now.
  void Open(TextReader& file);
  /// Back to the first piece, which is not read again as long as it is the only one.
  void Begin();
  /// Drops the bytes before `kept` and reads on.
  void Next(std::size_t kept);

  std::string_view Bytes() const { return {mBuffer.get(), mLength}; }
  bool AtEnd() const { return mLeft == 0; }

 private:
  void Fill();

  const std::size_t mCapacity;
  const std::unique_ptr<char[]> mBuffer;
  TextReader* mFile = nullptr;
  std::size_t mLength = 0;
  std::uint64_t mLeft = 0;  // to be read yet
  bool mHasBegin = false;
};

/// Counts one phrase in a file, and puts another in its place, within bounded memory however large the file
/// is.
class FileReplacer {
 public:
  static constexpr std::size_t UsualPiece = 256 * 1024;

  /// Both phrases are UTF-8. `tick` is called after every `piece` bytes of a file; it may throw while these
  /// are only counted.
  FileReplacer(std::string_view find, std::string_view replace, Tick tick, std::size_t piece = UsualPiece);

  /// How often the phrase occurs in a file that has been opened just now, overlapping places counted each.
  std::int64_t CountMatches(TextReader& file);

  /// Replaces the phrase, from left to right without overlap, in the file that was counted last. Either all
  /// of it succeeds or the file stays as it is. Raises where the file cannot be read any more; what else is
  /// in the way is told.
  std::optional<ReplaceProblem> ReplaceText();

 private:
  class Output;

  const PhraseSearch& SearchIn(TextEncoding encoding) const {
    return mSearches[static_cast<std::size_t>(encoding)];
  }
  std::int64_t CountMatches(TextEncoding encoding) { return Count(SearchIn(encoding)).Matches; }
  PhraseSearch::Tally Count(const PhraseSearch& search);
  void ReplaceText(const PhraseSearch& search, std::string_view replacement, Output& output);
  TextEncoding FindEncoding();
  bool IsMostlyUtf8();
  template <typename Step>
  void ForEachPiece(std::size_t overlap, Step step);

  const std::optional<std::u32string> mFind;  // nothing for what is no text
  const std::optional<std::u32string> mReplace;
  const bool mFindIsAscii;
  const bool mReplaceIsAscii;
  const std::vector<PhraseSearch> mSearches;  // by encoding
  const Tick mTick;
  FilePieces mPieces;
  std::string mPending;  // output that is not worth a write yet

  // Of the file in hand.
  TextReader* mFile = nullptr;
  std::size_t mTextBegin = 0;             // after the byte order mark
  std::optional<TextEncoding> mEncoding;  // nothing as long as every one would do that has no mark
};

}  // namespace brackwell
