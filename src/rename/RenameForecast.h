#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "rename/FolderFiles.h"
#include "rename/RenameEngine.h"

namespace brackwell {

/// What becomes of an item's new name if the run goes as planned.
struct NameForecast {
  enum class Fate : std::uint8_t {
    Given,
    NoFileName,   // no file can be called so: left out
    Taken,        // in place: somebody has the name when its turn comes, so it keeps the old one
    GivenBefore,  // in place: nobody has it now, but an item further up will by then
    Replaces,     // a copy of an earlier run
    ReplacesRow,  // the copy of an item further up
    IsReplaced,   // by the copy of an item further down
    NotCopied,    // a folder or link has the name where copies go
    NoPlace,      // copies have no folder to go to
  };
  Fate What = Fate::Given;
  bool IsWrapped = false;  // the number has more digits than the width, and keeps only its last ones

  bool IsWarning() const { return What != Fate::Given || IsWrapped; }
};

/// Whether any item's number has outgrown its width, so that names may come twice.
bool AnyIsWrapped(const WorkList& list, const Naming& naming);

/// Whether there is nothing to be said of the item's new name, whatever becomes of the others. Tells at once
/// what Forecast would have to go through all items for, but only where none is wrapped: then no two of them
/// want the same name, and those in the folder are all that have to be looked at.
bool IsFree(const RenameItem& item, const Naming& naming, const TakenNames& taken);

/// One for each item. `taken` are the names in the folder itself, or in RenamedFilesFolder for copies. Goes
/// through the run from the top, so a name is free once its bearer has got another one. Asks no disk.
std::vector<NameForecast> Forecast(const WorkList& list, const Naming& naming, bool preserve,
                                   const TakenNames& taken);

/// What the user is told of it; empty where that is nothing.
std::string WarningText(const NameForecast& forecast);

}  // namespace brackwell
