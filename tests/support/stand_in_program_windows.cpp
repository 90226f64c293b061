#include <fstream>
#include <string>

// Stands in for the programs that the system would start. With two arguments it adds the second as a line to
// the file that the first one names; with none it leaves the file "NAME.started" beside itself. Arguments are
// UTF-8, as the manifest says.

int main(int argc, char** argv) {
  std::ofstream file(argc == 3 ? argv[1] : std::string(argv[0]) + ".started",
                     std::ios::app | std::ios::binary);
  file << (argc == 3 ? argv[2] : "started") << '\n';
  return file.flush() ? 0 : 1;
}
