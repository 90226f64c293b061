#include "replace/ReplaceRow.h"

#include "common/Text.h"

namespace brackwell {

std::string ResultText(const ReplaceResult& result) {
  switch (result.What) {
    case ReplaceResult::Kind::None:
      return {};
    case ReplaceResult::Kind::ZeroSize:
      return "File has 0 size";
    case ReplaceResult::Kind::Found:
      return std::to_string(result.Count) + " matches found";
    case ReplaceResult::Kind::Replaced:
    case ReplaceResult::Kind::SameFile:
      return std::to_string(result.Matches()) + " matches replaced";
  }
  return {};
}

std::string SameFileText(std::string_view first) {
  return "Same file as " + ShownText(first) + " (hard link): see the result there.";
}

std::string TotalText(std::int32_t total, bool replaceMode) {
  return std::to_string(total) + " total matches were " + (replaceMode ? "replaced" : "found");
}

std::string ProblemText(ReplaceProblem problem, std::string_view path) {
  const std::string shown = ShownText(path);
  switch (problem) {
    case ReplaceProblem::CannotOpen:
      return "Can't open " + shown + ". It is possibly open in another application or you " +
             "don't have permissions to modify the file.";
    case ReplaceProblem::CannotEncode:
      return "Can't replace in " + shown +
             ". The replacement has characters that the file's encoding does not.";
    case ReplaceProblem::UnsupportedEncoding:
      return "Can't replace in " + shown +
             ". It seems to be UTF-32 text, or UTF-16 text without a byte order mark.";
  }
  return {};
}

}  // namespace brackwell
