#include "platform/ChmObjects.h"

#include <chm_lib.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/Posix.h"

namespace brackwell {
namespace {

using posix::Handle;

// A damaged file may claim to hold anything.
constexpr std::size_t MaxObjects = 10'000;
constexpr std::uint64_t MaxBytes = 64U << 20;
constexpr rlim_t MaxSeconds = 5;

/// In front of each object in the pipe; then come its name and its content.
struct ObjectHeader {
  std::uint32_t NameLength;
  std::uint32_t Length;
};

// --- in a process of its own: the library trusts what a file says of itself ------------------------

/// Of the process that reads: the pipe it writes into, and what it has read so far.
struct Reading {
  int Pipe;
  std::size_t Objects = 0;
  std::uint64_t Bytes = 0;
};

bool WriteBytes(int file, const void* bytes, std::size_t size) {
  const char* at = static_cast<const char*>(bytes);
  while (size > 0) {
    const auto written = write(file, at, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    at += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

int SendObject(chmFile* chm, chmUnitInfo* unit, void* context) {
  auto& reading = *static_cast<Reading*>(context);
  std::string_view name(unit->path, strnlen(unit->path, sizeof unit->path));
  if (name.starts_with('/')) name.remove_prefix(1);
  if (name.empty() || name.ends_with('/')) return CHM_ENUMERATOR_CONTINUE;  // a folder
  if (unit->length > MaxBytes) return CHM_ENUMERATOR_FAILURE;
  reading.Bytes += unit->length + name.size();
  if (++reading.Objects > MaxObjects || reading.Bytes > MaxBytes) return CHM_ENUMERATOR_FAILURE;

  std::vector<unsigned char> content(unit->length);
  const auto length = static_cast<LONGINT64>(unit->length);
  if (length > 0 && chm_retrieve_object(chm, unit, content.data(), 0, length) != length)
    return CHM_ENUMERATOR_FAILURE;
  const ObjectHeader header{static_cast<std::uint32_t>(name.size()),
                            static_cast<std::uint32_t>(unit->length)};
  const bool sent = WriteBytes(reading.Pipe, &header, sizeof header) &&
                    WriteBytes(reading.Pipe, name.data(), name.size()) &&
                    WriteBytes(reading.Pipe, content.data(), content.size());
  return sent ? CHM_ENUMERATOR_CONTINUE : CHM_ENUMERATOR_FAILURE;
}

/// A crash in here is the expected end of a damaged file, and nobody's business.
void PrepareToCrash() {
  const rlimit seconds{MaxSeconds, MaxSeconds};
  setrlimit(RLIMIT_CPU, &seconds);
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  prctl(PR_SET_DUMPABLE, 0);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nowhere, STDERR_FILENO);
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU, SIGPIPE})
    std::signal(signal, SIG_DFL);
}

[[noreturn]] void SendObjects(const std::string& path, int pipe) {
  PrepareToCrash();
  Reading reading{.Pipe = pipe};
  chmFile* chm = chm_open(path.c_str());
  const bool sent =
      chm && chm_enumerate(chm, CHM_ENUMERATE_NORMAL | CHM_ENUMERATE_FILES, SendObject, &reading) != 0;
  _exit(sent ? 0 : 1);
}

// --- in this process -------------------------------------------------------------------------------

std::string ReadAll(const Handle& pipe) {
  std::string bytes;
  char buffer[64 << 10];
  for (;;) {
    const auto length = read(pipe.Get(), buffer, sizeof buffer);
    if (length < 0 && errno == EINTR) continue;
    if (length <= 0) return bytes;
    bytes.append(buffer, static_cast<std::size_t>(length));
  }
}

ChmObjects Unpack(std::string_view bytes) {
  ChmObjects objects;
  while (bytes.size() >= sizeof(ObjectHeader)) {
    ObjectHeader header;
    std::memcpy(&header, bytes.data(), sizeof header);
    bytes.remove_prefix(sizeof header);
    if (bytes.size() < std::size_t{header.NameLength} + header.Length) break;
    objects[std::string(bytes.substr(0, header.NameLength))] = bytes.substr(header.NameLength, header.Length);
    bytes.remove_prefix(std::size_t{header.NameLength} + header.Length);
  }
  return objects;
}

bool EndedWell(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0)
    if (errno != EINTR) return false;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::optional<ChmObjects> ReadChm(const std::string& path) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
  const Handle from(ends[0]);
  Handle to(ends[1]);
  const pid_t reader = fork();
  if (reader < 0) return std::nullopt;
  if (reader == 0) SendObjects(path, to.Get());
  to.Close();
  const std::string bytes = ReadAll(from);
  if (!EndedWell(reader)) return std::nullopt;
  return Unpack(bytes);
}

}  // namespace brackwell
