#include "shell/ToolTable.h"

#include "compare/frmCompare.h"
#include "dirdisplay/frmDirDisplay.h"
#include "drives/frmDrives.h"
#include "fonts/frmFontDisplay.h"
#include "rename/frmRename.h"
#include "replace/frmReplace.h"

namespace brackwell {

using namespace Qt::StringLiterals;

std::vector<Tool> ToolTable() {
  return {
      {.Key = u"DirCompare"_s,
       .ToolTip = u"Compare directory contents"_s,
       .Create = [](Services& services) -> ToolWindow* { return new frmCompare(services); }},
      {.Key = u"DirDisplay"_s,
       .ToolTip = u"Display and print folder contents"_s,
       .Create = [](Services& services) -> ToolWindow* { return new frmDirDisplay(services); }},
      {.Key = u"FontDisplay"_s,
       .ToolTip = u"Sample text in multiple fonts"_s,
       .Create = [](Services& services) -> ToolWindow* { return new frmFontDisplay(services); },
       .Single = true,
       .HeedsChildMaximized = true},
      {.Key = u"Replace"_s,
       .ToolTip = u"Find and replace"_s,
       .Create = [](Services& services) -> ToolWindow* { return new frmReplace(services); },
       .HeedsChildMaximized = true},
      {.Key = u"RenImages"_s,
       .ToolTip = u"Rename image files"_s,
       .Create = [](Services& services) -> ToolWindow* { return new frmRename(services); },
       .HeedsChildMaximized = true},
      {.Key = u"Drive"_s,
       .ToolTip = u"Display disk drive information"_s,
       .Create = [](Services& services) -> ToolWindow* { return new frmDrives(services); },
       .Single = true},
  };
}

}  // namespace brackwell
