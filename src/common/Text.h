#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brackwell {

/// The text after the last "." of the whole argument, upper-cased; empty where there is none.
std::string GetFileExtension(std::string_view name);

/// How often `search` occurs in `text`, case and all, overlapping places counted each. 0 where either is
/// empty.
std::int32_t CountMatches(std::string_view text, std::string_view search);

/// The text, or an empty one in the place of none.
std::string NullToEmpty(const std::optional<std::string>& value);

/// A list typed by the user, "tmp; bak;", made tidy: without blanks and without one ";" at the end.
std::string TidyList(std::string_view text);

/// The items between the semicolons of a tidy list, empty ones included; an empty text has none.
std::vector<std::string> SplitList(std::string_view tidyList);

/// A native path or name as it is shown: what is no valid text as U+FFFD, control characters (a line break in a name,
/// say) by their pictures, so that every name stays on one line and none looks like another.
std::string ShownText(std::string_view native);

/// `path` with `from` at its front replaced by `to`. A path that does not begin with `from` stays as it is.
std::string ReplaceRoot(std::string_view path, std::string_view from, std::string_view to);

}  // namespace brackwell
