#include "support/MadeFonts_posix.h"

#include <fontconfig/fontconfig.h>
#include <utf8proc.h>

#include <cstdlib>
#include <stdexcept>

namespace brackwell {
namespace {

constexpr int FirstCharacter = 32;
constexpr int CharacterCount = 95;
constexpr int GlyphCount = CharacterCount + 1;  // the first is that of missing characters
constexpr int UnitsPerEm = 1000;
constexpr int Advance = 600;

/// Numbers one after another, the highest byte first.
class Bytes {
 public:
  Bytes& U16(std::initializer_list<int> numbers) {
    for (const int number : numbers) {
      mText += static_cast<char>(number >> 8);
      mText += static_cast<char>(number);
    }
    return *this;
  }
  Bytes& U32(std::uint32_t number) {
    return U16({static_cast<int>(number >> 16), static_cast<int>(number & 0xFFFF)});
  }
  Bytes& Text(const std::string& text) {
    mText += text;
    return *this;
  }
  Bytes& Zeros(std::size_t count) {
    mText.append(count, '\0');
    return *this;
  }

  std::size_t Size() const { return mText.size(); }
  const std::string& Get() const { return mText; }

 private:
  std::string mText;
};

std::string Utf16(const std::string& utf8) {
  Bytes units;
  const auto* text = reinterpret_cast<const utf8proc_uint8_t*>(utf8.data());
  const auto size = static_cast<utf8proc_ssize_t>(utf8.size());
  utf8proc_int32_t code = 0;
  for (utf8proc_ssize_t at = 0; at < size;) {
    const utf8proc_ssize_t length = utf8proc_iterate(text + at, size - at, &code);
    if (length < 1) throw std::invalid_argument(utf8);
    at += length;
    if (code > 0xFFFF)
      units.U16({0xD800 + ((code - 0x10000) >> 10), 0xDC00 + (code & 0x3FF)});
    else
      units.U16({code});
  }
  return units.Get();
}

Bytes NameTable(const std::vector<MadeFont::Name>& names) {
  const int count = static_cast<int>(names.size());
  Bytes records, texts;
  for (const MadeFont::Name& name : names) {
    const std::string text = Utf16(name.Text);
    records.U16(
        {3, 1, name.Language, name.Id, static_cast<int>(text.size()), static_cast<int>(texts.Size())});
    texts.Text(text);
  }
  return Bytes().U16({0, count, 6 + 12 * count}).Text(records.Get()).Text(texts.Get());
}

Bytes CharacterMap() {
  constexpr int last = FirstCharacter + CharacterCount - 1;
  return Bytes()
      .U16({0, 1, 3, 1})
      .U32(12)
      .U16({4, 32, 0, 4, 4, 1, 0})
      .U16({last, 0xFFFF, 0, FirstCharacter, 0xFFFF, 1 - FirstCharacter, 1, 0, 0});
}

Bytes Box(int height) {
  constexpr int left = 50, width = 500;
  return Bytes()
      .U16({1, left, 0, left + width, height, 3, 0})
      .U16({0x0101, 0x0101})
      .U16({left, 0, width, 0})
      .U16({0, height, 0, -height});
}

Bytes Head() {
  return Bytes()
      .U32(0x10000)
      .U32(0x10000)
      .U32(0)
      .U32(0x5F0F3CF5)
      .U16({0, UnitsPerEm})
      .Zeros(16)
      .U16({50, 0, 550, UnitsPerEm, 0, 8, 2, 0, 0});
}

Bytes HorizontalHeader() {
  return Bytes().U32(0x10000).U16({800, -200, 0, Advance, 50, 50, 550, 1}).Zeros(16).U16({1});
}

Bytes Maximums() { return Bytes().U32(0x10000).U16({GlyphCount, 4, 1, 0, 0, 1}).Zeros(16); }

Bytes Metrics(int weight) {
  return Bytes()
      .U16({4, Advance, weight, 5, 0})
      .Zeros(22)
      .Zeros(10)
      .U32(1)
      .Zeros(12)
      .Text("MADE")
      .U16({0x40, FirstCharacter, FirstCharacter + CharacterCount - 1, 800, -200, 0, 800, 200})
      .U32(1)
      .U32(0)
      .U16({500, 700, 0, 32, 1});
}

struct Table {
  const char* Tag;
  Bytes Content;
};

std::string Assemble(const std::vector<Table>& tables) {
  const int count = static_cast<int>(tables.size());
  Bytes directory, contents;
  directory.U32(0x10000).U16({count, 128, 3, count * 16 - 128});
  for (const Table& table : tables) {
    const auto offset = static_cast<std::uint32_t>(12 + 16 * tables.size() + contents.Size());
    directory.Text(table.Tag).U32(0).U32(offset).U32(static_cast<std::uint32_t>(table.Content.Size()));
    contents.Text(table.Content.Get()).Zeros(-table.Content.Size() % 4);
  }
  return directory.Get() + contents.Get();
}

}  // namespace

std::string MadeFont::File() const {
  const Bytes box = Box(BoxHeight);
  Bytes glyphs, places, advances;
  advances.U16({Advance});
  for (int glyph = 0; glyph < GlyphCount; ++glyph) {
    places.U16({static_cast<int>(glyphs.Size() / 2)});
    advances.U16({50});
    // The blank, too, has a place in the outlines; it is empty.
    if (glyph != 1) glyphs.Text(box.Get());
  }
  places.U16({static_cast<int>(glyphs.Size() / 2)});
  return Assemble({{"OS/2", Metrics(Weight)},
                   {"cmap", CharacterMap()},
                   {"glyf", glyphs},
                   {"head", Head()},
                   {"hhea", HorizontalHeader()},
                   {"hmtx", advances},
                   {"loca", places},
                   {"maxp", Maximums()},
                   {"name", NameTable(Names)},
                   {"post", Bytes().U32(0x30000).Zeros(28)}});
}

MadeFonts::MadeFonts() {
  mTree.Folder("fonts");
  mTree.Folder("cache");
  mTree.File("fonts.conf", "<?xml version=\"1.0\"?><fontconfig><dir>" + mTree.Path("fonts") +
                               "</dir><cachedir>" + mTree.Path("cache") + "</cachedir></fontconfig>");
}

MadeFonts::~MadeFonts() { unsetenv("FONTCONFIG_FILE"); }

std::string MadeFonts::Add(const std::string& file, const std::string& content) {
  mTree.File("fonts/" + file, content);
  return mTree.Path("fonts/" + file);
}

void MadeFonts::Use() const {
  setenv("FONTCONFIG_FILE", mTree.Path("fonts.conf").c_str(), 1);
  FcInitReinitialize();
}

}  // namespace brackwell
