// Runs a fuzz target once over every file of the folders and files that are named: the corpus as a
// test, without libFuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int Replay(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  // Named first, so that a crash tells where.
  std::fprintf(stderr, "%s\n", file.c_str());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return 1;
}

int ReplayAll(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return Replay(path);
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.is_regular_file()) count += Replay(entry.path());
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) count += ReplayAll(argv[i]);
  std::printf("%d inputs replayed\n", count);
  // A corpus that is not found must not pass.
  return count > 0 ? 0 : 1;
}
