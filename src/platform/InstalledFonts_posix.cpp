#include "platform/InstalledFonts_posix.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <tuple>

#include "platform/CaseRules.h"

namespace brackwell::posix {
namespace {

struct Destroy {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcObjectSet* objects) const { FcObjectSetDestroy(objects); }
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};

std::string Text(const FcPattern& font, const char* property, int index = 0) {
  FcChar8* text = nullptr;
  if (FcPatternGetString(&font, property, index, &text) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(text);
}

/// A font may have a range of values (weights, say); then it has all of them, the usual one among them.
double DistanceFrom(double usual, const FcPattern& font, const char* property) {
  double value = usual;
  FcPatternGetDouble(&font, property, 0, &value);
  return std::abs(value - usual);
}

/// The kind of font as its name tells it. Only faces that can be shown in any size are asked about.
std::string Kind(const FcPattern& font) {
  const std::string format = Text(font, FC_FONTFORMAT);
  return format == "CFF" ? "OpenType" : format.empty() ? "TrueType" : format;
}

/// One face under one of its names. Of those with the same name, the least in order stands for all.
struct Face {
  std::string Name;
  std::tuple<bool, double, double, double> Plainness;
  std::string File;
  std::string Kind;
};

bool Precedes(const Face& a, const Face& b) {
  const auto byName = CompareIgnoreCase(a.Name, b.Name);
  return byName != 0 ? byName < 0
                     : std::tie(a.Plainness, a.File, a.Name) < std::tie(b.Plainness, b.File, b.Name);
}

bool HaveOneName(const Face& a, const Face& b) { return CompareIgnoreCase(a.Name, b.Name) == 0; }

/// The face, its name still to come.
Face ReadFace(const FcPattern& font) {
  const std::string kind = Kind(font);
  const bool isOutdated = kind != "TrueType" && kind != "OpenType";
  return {.Name = {},
          .Plainness = {isOutdated, DistanceFrom(FC_SLANT_ROMAN, font, FC_SLANT),
                        DistanceFrom(FC_WEIGHT_REGULAR, font, FC_WEIGHT),
                        DistanceFrom(FC_WIDTH_NORMAL, font, FC_WIDTH)},
          .File = Text(font, FC_FILE),
          .Kind = kind};
}

/// The family names of a font: those in English, else the first one.
std::vector<std::string> FamilyNames(const FcPattern& font) {
  std::vector<std::string> names;
  std::string name;
  for (int i = 0; !(name = Text(font, FC_FAMILY, i)).empty(); ++i)
    if (std::string_view(Text(font, FC_FAMILYLANG, i)).starts_with("en")) names.push_back(name);
  if (names.empty() && !(name = Text(font, FC_FAMILY)).empty()) names.push_back(name);
  return names;
}

}  // namespace

std::vector<InstalledFont> InstalledFonts() {
  const std::unique_ptr<FcPattern, Destroy> scalable(FcPatternBuild(
      nullptr, FC_SCALABLE, FcTypeBool, static_cast<int>(FcTrue), static_cast<char*>(nullptr)));
  const std::unique_ptr<FcObjectSet, Destroy> properties(
      FcObjectSetBuild(FC_FAMILY, FC_FAMILYLANG, FC_FILE, FC_FONTFORMAT, FC_SLANT, FC_WEIGHT, FC_WIDTH,
                       static_cast<char*>(nullptr)));
  const std::unique_ptr<FcFontSet, Destroy> fonts(FcFontList(nullptr, scalable.get(), properties.get()));
  if (!fonts) return {};

  std::vector<Face> faces;
  for (int i = 0; i < fonts->nfont; ++i) {
    Face face = ReadFace(*fonts->fonts[i]);
    for (std::string& name : FamilyNames(*fonts->fonts[i])) {
      face.Name = std::move(name);
      faces.push_back(face);
    }
  }
  std::sort(faces.begin(), faces.end(), Precedes);
  faces.erase(std::unique(faces.begin(), faces.end(), HaveOneName), faces.end());

  std::vector<InstalledFont> installed;
  installed.reserve(faces.size());
  for (const Face& face : faces)
    installed.push_back({.Name = face.Name + " (" + face.Kind + ")", .File = face.File});
  return installed;
}

}  // namespace brackwell::posix
