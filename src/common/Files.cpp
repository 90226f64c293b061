#include "common/Files.h"

#include "platform/FileSystemObject.h"

namespace brackwell {

void WriteTextFile(FileSystemObject& files, const std::string& path, bool overwrite, std::string_view text) {
  const auto file = files.CreateTextFile(path, overwrite);
  file->Write(text);
  file->Close();
}

}  // namespace brackwell
