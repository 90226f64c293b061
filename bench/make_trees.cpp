// Makes two folder trees for the comparison to work on: make_trees <folder> [files] [folders]
//
// <folder>/source and <folder>/target get `files` files each in `folders` folders, five in a hundred differing, in
// every way that a comparison tells apart. The same numbers make the same trees.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr time_t BaseTime = 1577836800;  // the start of 2020
constexpr int FoldersPerFolder = 8;

void MakeFile(const std::string& path, std::size_t size, time_t modified) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  static const std::string content(4096, 'b');
  const timespec times[] = {{modified, 0}, {modified, 0}};
  if (file < 0 || write(file, content.data(), size) != static_cast<ssize_t>(size) || futimens(file, times) != 0) {
    std::perror(path.c_str());
    std::exit(1);
  }
  close(file);
}

/// Folder number n lies in folder (n-1)/8: a tree some five levels deep.
std::string FolderPath(int number) {
  if (number == 0) return {};
  return FolderPath((number - 1) / FoldersPerFolder) + "folder-" + std::to_string(number) + "/";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: make_trees <folder> [files] [folders]\n");
    return 2;
  }
  const std::string top = argv[1];
  const int files = argc > 2 ? std::atoi(argv[2]) : 200000;
  const int folders = argc > 3 ? std::atoi(argv[3]) : 20000;
  const std::array<std::string, 2> roots{top + "/source/", top + "/target/"};

  std::mt19937 random(2020);
  for (int folder = 0; folder < folders; ++folder) {
    const std::string path = FolderPath(folder);
    const bool isLeaf = folder * FoldersPerFolder + 1 >= folders;
    const int missing = isLeaf && random() % 200 == 0 ? static_cast<int>(random() % 2) : -1;
    for (int side = 0; side < 2; ++side)
      if (side != missing) fs::create_directories(roots[side] + path);
    const int count = files / folders + (folder < files % folders ? 1 : 0);
    for (int file = 0; file < count; ++file) {
      static constexpr std::array<const char*, 5> Extensions{".txt", ".cpp", ".jpeg", ".html", ""};
      const std::string name = path + "document-" + std::to_string(random() % 100000) + "-" + std::to_string(file) +
                               Extensions[random() % Extensions.size()];
      const std::size_t size = random() % 200;
      const time_t modified = BaseTime + static_cast<time_t>(random() % 10000000);
      const unsigned kind = random() % 100;  // below 5: a difference
      for (int side = 0; side < 2; ++side) {
        if (side == missing || (kind == 0 && side == 0) || (kind == 1 && side == 1)) continue;
        const bool isNewer = (kind == 2 && side == 0) || (kind == 3 && side == 1);
        const bool isLarger = kind == 4 && side == 0;
        MakeFile(roots[side] + name, size + (isLarger ? 7 : 0), modified + (isNewer ? 60 : 0));
      }
    }
  }
}
