#pragma once

#include <string>
#include <string_view>

namespace brackwell {

/// Reads a file as the bytes it holds.
class TextReader {
 public:
  virtual ~TextReader() = default;
  /// Everything that is left of the file; raises FileSystemError.
  virtual std::string ReadAll() = 0;
};

/// Writes a file that appears under its name only when it is closed. One that is dropped without Close,
/// because of an error say, leaves nothing behind and an older file of that name untouched.
class TextWriter {
 public:
  virtual ~TextWriter() = default;
  virtual void Write(std::string_view bytes) = 0;
  /// Puts the file in place. Call it once, last.
  virtual void Close() = 0;
};

}  // namespace brackwell
