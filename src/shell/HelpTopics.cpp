#include "shell/HelpTopics.h"

#include <utility>

namespace brackwell {

using namespace Qt::StringLiterals;

QString HelpTopicOf(const QString& key) {
  static const std::pair<QString, QString> topics[] = {
      {u"DirCompare"_s, u"compare.html"_s},
      {u"DirDisplay"_s, u"directory-display.html"_s},
      {u"FontDisplay"_s, u"fonts.html"_s},
      {u"Replace"_s, u"replace.html"_s},
      {u"RenImages"_s, u"rename.html"_s},
      {u"Drive"_s, u"drives.html"_s},
      {u"frmCompareInfo"_s, u"compare-details.html"_s},
      {u"frmOptions"_s, u"options.html"_s},
      {u"frmAbout"_s, u"main-window.html"_s},
  };
  for (const auto& [owner, topic] : topics)
    if (owner == key) return topic;
  return u"welcome.html"_s;
}

}  // namespace brackwell
