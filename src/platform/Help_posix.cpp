#include "platform/Help.h"

namespace brackwell {

bool ShowHelpContents(const std::string& /*helpFile*/) { return false; }
bool ShowHelpSearch(const std::string& /*helpFile*/) { return false; }
bool ShowHelpTopic(const std::string& /*helpFile*/, const std::string& /*topic*/) { return false; }
void CloseHelp() {}

}  // namespace brackwell
