#include "rename/RenameForecast.h"

#include <algorithm>

namespace brackwell {
namespace {

using Fate = NameForecast::Fate;

bool TakesPart(const RenameItem& item) { return item.Checked && item.Number; }

/// What RenameFiles does in place, with names only.
class InPlace {
 public:
  explicit InPlace(const TakenNames& taken) : mBefore(taken.All), mNames(taken.All) {}

  Fate FateOf(const std::string& name, const std::string& newName) {
    if (!IsFileName(newName)) return Fate::NoFileName;
    const NameCounts::Key own = NameCounts::KeyOf(name);
    const NameCounts::Key wanted = NameCounts::KeyOf(newName);
    if (mNames.Count(wanted) > (own == wanted ? 1 : 0))
      return mBefore.Count(wanted) == 0 ? Fate::GivenBefore : Fate::Taken;
    mNames.Remove(own);
    mNames.Add(wanted);
    return Fate::Given;
  }

 private:
  const NameCounts& mBefore;
  NameCounts mNames;
};

/// What RenameFiles does with copies.
class Copies {
 public:
  explicit Copies(const TakenNames& taken) : mTaken(taken) {}

  /// Every copy has to be known before the fate of the first.
  void Add(const std::string& newName) {
    if (IsCopied(newName)) mPlanned.Add(NameCounts::KeyOf(newName));
  }

  Fate FateOf(const std::string& newName) {
    if (mTaken.IsNoFolder) return Fate::NoPlace;
    if (!IsFileName(newName)) return Fate::NoFileName;
    const NameCounts::Key name = NameCounts::KeyOf(newName);
    if (mTaken.Kept.Count(name) > 0) return Fate::NotCopied;
    mDone.Add(name);
    if (mDone.Count(name) < mPlanned.Count(name)) return Fate::IsReplaced;
    if (mDone.Count(name) > 1) return Fate::ReplacesRow;
    return mTaken.All.Count(name) > 0 ? Fate::Replaces : Fate::Given;
  }

 private:
  bool IsCopied(const std::string& newName) const {
    return IsFileName(newName) && mTaken.Kept.Count(NameCounts::KeyOf(newName)) == 0;
  }

  const TakenNames& mTaken;
  NameCounts mPlanned;
  NameCounts mDone;
};

template <typename FateOf>
std::vector<NameForecast> ForEach(const WorkList& list, const Naming& naming, FateOf fateOf) {
  std::vector<NameForecast> forecasts;
  forecasts.reserve(list.size());
  for (const RenameItem& item : list) {
    NameForecast& forecast = forecasts.emplace_back();
    if (!TakesPart(item)) continue;
    forecast.What = fateOf(item, NewName(naming, item));
    forecast.IsWrapped = IsWrapped(naming, item);
  }
  return forecasts;
}

std::string_view TextOf(Fate fate) {
  switch (fate) {
    case Fate::Given:
      break;
    case Fate::NoFileName:
      return "No file can have this name, so this one is left out.";
    case Fate::Taken:
      return "There is a file or folder of this name, so this file keeps its old one.";
    case Fate::GivenBefore:
      return "A file further up gets this name, so this one keeps its old one.";
    case Fate::Replaces:
      return "There is a copy of this name in 'Renamed Files', which is replaced.";
    case Fate::ReplacesRow:
      return "This copy replaces that of a file further up, which gets the same name.";
    case Fate::IsReplaced:
      return "The copy of a file further down gets the same name and replaces this one.";
    case Fate::NotCopied:
      return "There is a folder or link of this name in 'Renamed Files', so this file is not copied.";
    case Fate::NoPlace:
      return "'Renamed Files' is a file or a link here, so nothing is copied.";
  }
  return {};
}

}  // namespace

bool AnyIsWrapped(const WorkList& list, const Naming& naming) {
  return std::ranges::any_of(list, [&](const RenameItem& item) { return IsWrapped(naming, item); });
}

bool IsFree(const RenameItem& item, const Naming& naming, const TakenNames& taken) {
  if (!TakesPart(item)) return true;
  if (taken.IsNoFolder) return false;
  const std::string newName = NewName(naming, item);
  return IsFileName(newName) && taken.All.Count(NameCounts::KeyOf(newName)) == 0;
}

std::vector<NameForecast> Forecast(const WorkList& list, const Naming& naming, bool preserve,
                                   const TakenNames& taken) {
  if (!preserve) {
    InPlace names(taken);
    return ForEach(list, naming, [&](const RenameItem& item, const std::string& newName) {
      return names.FateOf(item.Name, newName);
    });
  }
  Copies copies(taken);
  for (const RenameItem& item : list)
    if (TakesPart(item)) copies.Add(NewName(naming, item));
  return ForEach(list, naming, [&](const RenameItem& /*item*/, const std::string& newName) {
    return copies.FateOf(newName);
  });
}

std::string WarningText(const NameForecast& forecast) {
  std::string text(TextOf(forecast.What));
  if (!forecast.IsWrapped) return text;
  if (!text.empty()) text += '\n';
  return text + "The number has outgrown its width, so only its last digits are kept.";
}

}  // namespace brackwell
