// The least that any search through a tree has to do: every folder listed once, every file opened, read and
// closed. read_files <folder> prints the seconds that it took.

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

long files = 0;
long bytes = 0;

void Require(bool done, const std::string& path) {
  if (done) return;
  std::perror(path.c_str());
  std::exit(1);
}

void Read(int folder, const char* name) {
  static char buffer[256 * 1024];
  const int file = openat(folder, name, O_RDONLY | O_CLOEXEC);
  Require(file >= 0, name);
  ++files;
  for (ssize_t length; (length = read(file, buffer, sizeof buffer)) != 0; bytes += length)
    Require(length > 0, name);
  close(file);
}

void Walk(const std::string& path) {
  const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  Require(folder >= 0, path);
  std::vector<std::string> subFolders;
  alignas(dirent64) static char buffer[64 * 1024];
  for (ssize_t length; (length = getdents64(folder, buffer, sizeof buffer)) > 0;) {
    for (ssize_t at = 0; at < length;) {
      const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
      at += entry->d_reclen;
      const std::string name = entry->d_name;
      if (entry->d_type == DT_REG) Read(folder, entry->d_name);
      if (entry->d_type == DT_DIR && name != "." && name != "..") subFolders.push_back(name);
    }
  }
  close(folder);
  for (const std::string& name : subFolders) Walk(path + "/" + name);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const auto start = std::chrono::steady_clock::now();
  Walk(argv[1]);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  std::printf("seconds %.4f files %ld bytes %ld\n", time.count(), files, bytes);
}
