#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brackwell {

/// Called often, at least every few milliseconds, during calls that can take long. May throw to end the call,
/// which then leaves no trace of what was under way.
using Tick = std::function<void()>;

class TextWriter;

/// What ends a line of a text file on this system.
#ifdef _WIN32
inline constexpr char LineEnd[] = "\r\n";
#else
inline constexpr char LineEnd[] = "\n";
#endif

/// Which file it is, whatever names lead to it.
struct FileIdentity {
  std::uint64_t Volume = 0;
  std::uint64_t Number = 0;
  auto operator<=>(const FileIdentity&) const = default;
};

/// Reads a file as the bytes it holds, up to the size it was opened with: one that others add to all the time
/// has an end as well. Its calls raise FileSystemError.
class TextReader {
 public:
  virtual ~TextReader() = default;
  /// The file's size in bytes when it was opened. Files of the kernel's that tell none are read until nothing
  /// comes.
  virtual std::uint64_t Size() const = 0;
  /// Of a file that had several names (hard links) when it was opened; nothing for all others.
  virtual std::optional<FileIdentity> SharedIdentity() const = 0;
  /// Up to `size` bytes into `buffer`; fewer only where the file ends, 0 at its end.
  virtual std::size_t Read(char* buffer, std::size_t size) = 0;
  /// Everything that is left of the file.
  virtual std::string ReadAll() = 0;
  /// Back to the file's first byte.
  virtual void Rewind() = 0;
  /// A writer of new content for this file; the reader may go first. Close puts the new content in the old
  /// one's place, so that the file is wholly old or wholly new at every moment, even if the program is
  /// killed. Owner, mode, access lists, extended attributes and other names of the file stay as they are; it
  /// counts as modified now. Close ends the reading, too. Any error leaves the file as it was. Throws
  /// PermissionDenied (read-only, even for an administrator; not to be written by this user; open for writing
  /// in another program, where the system tells, which Close looks at as well), PathFileAccess (opened
  /// through a link); Close throws PathFileAccess where the file has changed since it was opened, DiskFull,
  /// ... Close calls `tick`, which must not throw here, while it copies into the file that is there.
  virtual std::unique_ptr<TextWriter> Rewrite(Tick tick = {}) = 0;
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
