#include "platform/Launch.h"

#include <fcntl.h>
#include <glib.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/DefaultProgram_posix.h"
#include "platform/Paths.h"

namespace brackwell {
namespace {

enum Code : int {
  Other = 0,
  FileNotFound = 2,
  PathNotFound = 3,
  AccessDenied = 5,
  OutOfMemory = 8,
  NoProgram = 31,
  Opened = 33
};

constexpr char OpenerProgram[] = "xdg-open";
constexpr std::chrono::seconds Patience{1};

Code CodeOfErrno(int error, const std::string& path) {
  switch (error) {
    case ENOENT: {
      struct stat parent {};
      const std::string folder(ParentPath(path));
      return stat(folder.c_str(), &parent) == 0 && S_ISDIR(parent.st_mode) ? FileNotFound : PathNotFound;
    }
    case ENOTDIR:
      return PathNotFound;
    case EACCES:
    case EPERM:
      return AccessDenied;
    case ENOMEM:
      return OutOfMemory;
    default:
      return Other;
  }
}

/// Opened where nothing speaks against handing the document over. Found out here, since the opener's own exit
/// codes tell less, and some desktops' openers report nothing at all.
Code CheckDocument(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return CodeOfErrno(errno, path);
  if (faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0) return CodeOfErrno(errno, path);
  return Opened;
}

/// As a URI, so that no opener takes "%", "#" or "?" in a name, or bytes that are not text, for something
/// else.
std::string FileUri(const std::string& path) {
  const std::unique_ptr<char, decltype(&g_free)> uri(g_filename_to_uri(path.c_str(), nullptr, nullptr),
                                                     g_free);
  return uri ? uri.get() : path;
}

/// What a program started from here must not get from us: files, terminal, blocked signals. A session of its
/// own keeps it alive when the terminal that we were started from closes.
class SpawnSettings {
 public:
  SpawnSettings() {
    posix_spawn_file_actions_init(&mFiles);
    posix_spawn_file_actions_addopen(&mFiles, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&mFiles, STDIN_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&mFiles, STDIN_FILENO, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&mFiles, STDERR_FILENO + 1);

    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&mAttributes);
    posix_spawnattr_setsigmask(&mAttributes, &none);
    posix_spawnattr_setsigdefault(&mAttributes, &all);
    posix_spawnattr_setflags(&mAttributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&mAttributes);
    posix_spawn_file_actions_destroy(&mFiles);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  /// Gives an error number, or 0. A program without a folder is looked for in PATH.
  int Spawn(pid_t& process, std::string program, std::optional<std::string> argument = {}) const {
    char* arguments[] = {program.data(), argument ? argument->data() : nullptr, nullptr};
    return posix_spawnp(&process, program.c_str(), &mFiles, &mAttributes, arguments, environ);
  }

 private:
  posix_spawn_file_actions_t mFiles;
  posix_spawnattr_t mAttributes;
};

/// Collects the process whenever it ends, so that no zombie is left; gives its exit code.
int WaitForEnd(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) == -1 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

Code CodeOfExit(int exitCode) {
  switch (exitCode) {
    case 0:
      return Opened;
    case 2:
      return FileNotFound;
    case 3:  // a program that the opener needs is missing
    case 4:  // no program took the document
      return NoProgram;
    default:
      return Other;
  }
}

/// The exit code, once there is one. Not valid where nobody can be made to wait for it.
std::future<int> ExitCodeOf(pid_t process) {
  std::packaged_task<int()> wait([process] { return WaitForEnd(process); });
  std::future<int> exitCode = wait.get_future();
  try {
    std::thread(std::move(wait)).detach();
  } catch (const std::system_error&) {
    return {};
  }
  return exitCode;
}

/// Openers that hand the document over end soon; those that become the document's program run on.
Code CodeOfOpener(pid_t process) {
  std::future<int> exitCode = ExitCodeOf(process);
  if (!exitCode.valid() || exitCode.wait_for(Patience) != std::future_status::ready) return Opened;
  return CodeOfExit(exitCode.get());
}

Code CodeOfSpawnError(int error) {
  switch (error) {
    case ENOENT:
    case EACCES:
      return NoProgram;
    case ENOMEM:
      return OutOfMemory;
    default:
      return Other;
  }
}

Code OpenUri(const std::string& uri) {
  pid_t process = 0;
  const int error = SpawnSettings().Spawn(process, OpenerProgram, uri);
  return error == 0 ? CodeOfOpener(process) : CodeOfSpawnError(error);
}

}  // namespace

int OpenDocument(const std::string& path, void* /*ownerWindow*/) {
  const std::string document = path.empty() ? path : std::filesystem::absolute(path).string();
  const Code checked = CheckDocument(document);
  if (checked != Opened) return checked;

  return posix::MayHaveProgram(document) ? OpenUri(FileUri(document)) : NoProgram;
}

int OpenWebAddress(const std::string& address, void* /*ownerWindow*/) {
  if (!IsWebAddress(address)) return FileNotFound;
  return posix::MayHaveBrowser(address) ? OpenUri(address) : NoProgram;
}

bool StartProgram(const std::string& path) {
  pid_t process = 0;
  if (SpawnSettings().Spawn(process, path) != 0) return false;
  ExitCodeOf(process);  // it is collected when it ends, however long from now
  return true;
}

}  // namespace brackwell
