#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace brackwell {

/// What became of one listed file.
struct ReplaceResult {
  enum class Kind : std::uint8_t { None, ZeroSize, Found, Replaced, SameFile };
  Kind What = Kind::None;
  std::int32_t Count = 0;  // of matches; for the same file as an earlier row's, that row, from 0

  std::int32_t Matches() const { return What == Kind::SameFile ? 0 : Count; }
};

/// One file of the work list, and its result once it has one.
struct ReplaceRow {
  std::string Path;  // native
  ReplaceResult Result;
};

/// Hundreds of thousands of them: a list that grows without moving what it has.
using ReplaceRows = std::deque<ReplaceRow>;

/// "3 matches found", "3 matches replaced", "File has 0 size"; nothing for a file whose turn has not come, or
/// that was gone when it came.
std::string ResultText(const ReplaceResult& result);

/// What is told of a file that an earlier row has by another of its names, the native path `first`.
std::string SameFileText(std::string_view first);

/// "14 total matches were replaced".
std::string TotalText(std::int32_t total, bool replaceMode);

/// Why a file that holds the phrase was left as it is.
enum class ReplaceProblem {
  CannotOpen,           // it may not be written, others write to it or have changed it, or the disk is full
  CannotEncode,         // its encoding has no such characters as the replacement holds
  UnsupportedEncoding,  // its bytes are not those of the characters that were looked for
};

/// What the user is told of the file `path`, a native path.
std::string ProblemText(ReplaceProblem problem, std::string_view path);

}  // namespace brackwell
