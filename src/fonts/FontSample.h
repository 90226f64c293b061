#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brackwell {

/// The name of a font out of its registry entry: what stands before the first "(", without blanks around it.
/// An entry without "(" is the name as it is.
std::string CleanFontName(std::string_view valueName);

/// The ready-made text with this key: "QBF" is a sentence with every letter of the alphabet. All others are
/// the characters from 32 up to the code that the last three characters of the key say, as the
/// system's code page has them; none where these are no code.
std::string PresetText(std::string_view key);

/// A text as it goes into the page: blanks keep their number, line ends of every kind break the line. All
/// else is markup.
std::string PrepareSample(std::string_view text);

/// What is to be sampled.
struct FontSample {
  std::string Title{};
  std::vector<std::string> Fonts{};
  std::string Text{};  // as typed
  std::string Size{};  // in points, as typed
  bool Bold = false;
  bool Italic = false;
  bool Underline = false;
  bool Strikethru = false;
};

/// The page: a paragraph for each font, its name in a plain font above the sample in its own. Browsers show
/// the sample in their usual size, since "font-size=" is no style, and take of the two decorations the last;
/// that is as it shall be. Names come from font files and so from strangers: none can end a tag or a style.
std::string ToHtml(const FontSample& sample);

}  // namespace brackwell
