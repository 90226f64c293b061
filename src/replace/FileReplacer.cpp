#include "replace/FileReplacer.h"

#include <algorithm>
#include <utility>

#include "platform/FileSystemObject.h"

namespace brackwell {
namespace {

constexpr std::size_t LongestUtf8 = 4;

bool IsAscii(const std::optional<std::u32string>& text) {
  return text && std::ranges::all_of(*text, [](char32_t character) { return character < 0x80; });
}

std::vector<PhraseSearch> SearchesFor(std::u32string_view phrase) {
  std::vector<PhraseSearch> searches;
  for (std::size_t encoding = 0; encoding < TextEncodingCount; ++encoding)
    searches.emplace_back(phrase, static_cast<TextEncoding>(encoding));
  return searches;
}

std::size_t LongestOverlap(const std::vector<PhraseSearch>& searches) {
  return std::max(LongestUtf8, std::ranges::max(searches, {}, &PhraseSearch::LongestMatch).LongestMatch());
}

/// The new content, or the place where it should go, failed; the old content is whole.
struct CannotWrite {};

template <typename Step>
auto Writing(Step step) try {
  return step();
} catch (const FileSystemError&) {
  throw CannotWrite{};
}

}  // namespace

std::unique_ptr<TextReader> OpenUnlessEmpty(const FileSystemObject& files, const std::string& path) try {
  auto file = files.OpenTextFile(path);
  return file->Size() > 0 ? std::move(file) : nullptr;
} catch (const FileSystemError&) {
  const ItemProperties file = files.GetFile(path);
  const bool isLink = (file.Attributes & Attribute::Alias) != 0;
  if (isLink) throw FileSystemError(FileError::FileNotFound, path);
  if (file.Size > 0) throw;
  return nullptr;
}

FilePieces::FilePieces(std::size_t capacity)
    : mCapacity(capacity), mBuffer(std::make_unique_for_overwrite<char[]>(mCapacity)) {}

void FilePieces::Open(TextReader& file) {
  mFile = &file;
  mLength = 0;
  mLeft = file.Size();
  mHasBegin = true;
  Fill();
}

void FilePieces::Begin() {
  if (mHasBegin) return;
  mFile->Rewind();
  Open(*mFile);
}

void FilePieces::Next(std::size_t kept) {
  std::copy(mBuffer.get() + kept, mBuffer.get() + mLength, mBuffer.get());
  mLength -= kept;
  mHasBegin = false;
  Fill();
}

void FilePieces::Fill() {
  while (mLeft > 0 && mLength < mCapacity) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(mLeft, mCapacity - mLength));
    const std::size_t got = mFile->Read(mBuffer.get() + mLength, wanted);
    mLength += got;
    mLeft = got > 0 ? mLeft - got : 0;
  }
}

/// Large writes, whatever comes in.
class FileReplacer::Output {
 public:
  Output(TextReader& file, std::string& pending, const Tick& tick)
      : mWriter(Writing([&] { return file.Rewrite(tick); })), mPending(pending) {
    mPending.clear();
  }

  void Add(std::string_view bytes) {
    mPending += bytes;
    if (mPending.size() >= UsualPiece) Flush();
  }
  void Close() {
    Flush();
    Writing([&] { mWriter->Close(); });
  }

 private:
  void Flush() {
    if (!mPending.empty()) Writing([&] { mWriter->Write(mPending); });
    mPending.clear();
  }

  const std::unique_ptr<TextWriter> mWriter;
  std::string& mPending;
};

FileReplacer::FileReplacer(std::string_view find, std::string_view replace, Tick tick, std::size_t piece)
    : mFind(Decode(find)),
      mReplace(Decode(replace)),
      mFindIsAscii(IsAscii(mFind)),
      mReplaceIsAscii(IsAscii(mReplace)),
      mSearches(SearchesFor(mFind.value_or(std::u32string()))),
      mTick(std::move(tick)),
      mPieces(piece + 2 * LongestOverlap(mSearches)) {}

std::int64_t FileReplacer::CountMatches(TextReader& file) {
  mFile = &file;
  mEncoding.reset();
  mTextBegin = 0;
  mPieces.Open(file);
  if (const auto mark = FindByteOrderMark(mPieces.Bytes())) {
    mEncoding = mark->Encoding;
    mTextBegin = mark->Length;
    return CountMatches(*mEncoding);
  }
  if (mFindIsAscii) {
    // Where every match is plain ASCII it is one in both encodings, which saves finding out.
    const PhraseSearch::Tally tally = Count(SearchIn(TextEncoding::Utf8));
    if (tally.Bytes == tally.Matches * static_cast<std::int64_t>(mFind->size())) return tally.Matches;
  }
  mEncoding = FindEncoding();
  return CountMatches(*mEncoding);
}

std::optional<ReplaceProblem> FileReplacer::ReplaceText() try {
  mPieces.Begin();
  if (IsUnsupportedUnicode(mPieces.Bytes(), mFile->Size())) return ReplaceProblem::UnsupportedEncoding;
  if (!mEncoding && !mReplaceIsAscii) mEncoding = FindEncoding();
  const TextEncoding encoding = mEncoding.value_or(TextEncoding::Utf8);
  const auto replacement = mReplace ? Encode(*mReplace, encoding) : std::nullopt;
  if (!replacement || (encoding == TextEncoding::CodePage && !mReplaceIsAscii && IsMostlyUtf8()))
    return ReplaceProblem::CannotEncode;
  Output output(*mFile, mPending, mTick);
  ReplaceText(SearchIn(encoding), *replacement, output);
  output.Close();
  return std::nullopt;
} catch (const CannotWrite&) {
  return ReplaceProblem::CannotOpen;
}

/// Calls `step(bytes, from, to)` for all of the text, with `overlap` bytes behind `to` while there are more.
/// It returns how far it has come, at least to `to`; npos ends it.
template <typename Step>
void FileReplacer::ForEachPiece(std::size_t overlap, Step step) {
  mPieces.Begin();
  for (std::size_t from = mTextBegin;;) {
    const std::string_view bytes = mPieces.Bytes();
    const bool atEnd = mPieces.AtEnd();
    const std::size_t to = atEnd ? bytes.size() : (bytes.size() - overlap) / 2 * 2;  // UTF-16 stays aligned
    const std::size_t done = step(bytes, from, to);
    if (atEnd || done == std::string_view::npos) return;
    mPieces.Next(to);
    from = done - to;
    mTick();
  }
}

PhraseSearch::Tally FileReplacer::Count(const PhraseSearch& search) {
  PhraseSearch::Tally total;
  ForEachPiece(search.LongestMatch(), [&](std::string_view bytes, std::size_t from, std::size_t to) {
    const PhraseSearch::Tally tally = search.Count(bytes, from, to);
    total.Matches += tally.Matches;
    total.Bytes += tally.Bytes;
    return to;
  });
  return total;
}

void FileReplacer::ReplaceText(const PhraseSearch& search, std::string_view replacement, Output& output) {
  mPieces.Begin();
  output.Add(mPieces.Bytes().substr(0, mTextBegin));
  ForEachPiece(search.LongestMatch(), [&](std::string_view bytes, std::size_t from, std::size_t to) {
    while (const auto match = search.Find(bytes, from, to)) {
      output.Add(bytes.substr(from, match->Begin - from));
      output.Add(replacement);
      from = match->End;
    }
    if (from < to) output.Add(bytes.substr(from, to - from));
    return std::max(from, to);
  });
}

/// The encoding of a file without a mark.
TextEncoding FileReplacer::FindEncoding() {
  bool isValid = true;
  ForEachPiece(LongestUtf8, [&](std::string_view bytes, std::size_t from, std::size_t to) {
    const std::size_t done = from + ValidUtf8Length(bytes.substr(from));
    isValid = done >= to;
    return isValid ? done : std::string_view::npos;
  });
  return isValid ? TextEncoding::Utf8 : TextEncoding::CodePage;
}

/// Of a file that is not UTF-8 as a whole: bytes of the code page would be a second encoding in it.
bool FileReplacer::IsMostlyUtf8() {
  Utf8Tally tally;
  ForEachPiece(LongestUtf8, [&](std::string_view bytes, std::size_t from, std::size_t to) {
    return TallyUtf8(bytes, from, to, tally);
  });
  return tally.Characters > tally.Strays;
}

}  // namespace brackwell
