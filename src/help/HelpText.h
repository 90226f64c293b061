#pragma once

#include <string>
#include <string_view>
#include <vector>

// The text of help pages without their markup. Pages may be anybody's: whatever is in them, these come to an
// end, and look at the first 128 KB only.

namespace brackwell {

/// What a page shows: without markup, and without what stands in its head. A blank stands for any run of
/// blanks and line ends; elements that begin or end a line count as blanks.
std::string PlainText(std::string_view html);

/// What stands between <title> and </title>, with the same blanks.
std::string PageTitle(std::string_view html);

/// The words of a text, in lower case: runs of letters and digits.
std::vector<std::string> Words(std::string_view text);

}  // namespace brackwell
