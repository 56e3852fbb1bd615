// Reading a model file in a process of its own, up to the checked form of the scene, against the
// same reader without it, which hands nothing over: 1.15 times at most, besides the start of that
// process. Prints medians.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/limits.h"
#include "corvanta/importer/neutral/NSceneView.h"
#include "corvanta/importer/process/NReadModel.h"
#include "corvanta/importer/reader/NAssimpFile.h"

namespace {

using namespace corvanta;
using std::chrono::steady_clock;

class Opener : public importer::reader::NFileOpener {
 public:
  int Open(std::string const& path) override { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }
};

template <typename Work>
double Measure(Work const& work) {
  auto const start = steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(steady_clock::now() - start).count();
}

// In a process that has read nothing yet, as a reader's own.
double MeasureHere(std::string const& path) {
  int ends[2];
  if (pipe(ends) != 0) return NAN;
  pid_t const pid = fork();
  if (pid == 0) {
    double const time = Measure([&] {
      Opener opener;
      new importer::reader::NAssimpFile(opener, path);  // not taken down, as in the reader
    });
    _exit(write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
  }
  double time = NAN;
  if (read(ends[0], &time, sizeof time) != sizeof time) time = NAN;
  waitpid(pid, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  return time;
}

double GetMedian(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

// A wavy sheet of 2 * side * side triangles.
void WriteObj(int side, std::string const& path) {
  std::ofstream file(path);
  for (int y = 0; y <= side; ++y) {
    for (int x = 0; x <= side; ++x) {
      file << "v " << x << ' ' << y << ' ' << std::sin(0.1 * x) * std::cos(0.1 * y) << '\n';
    }
  }
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      int const first = y * (side + 1) + x + 1;
      int const above = first + side + 1;
      file << "f " << first << ' ' << first + 1 << ' ' << above << '\n';
      file << "f " << first + 1 << ' ' << above + 1 << ' ' << above << '\n';
    }
  }
}

void Compare(int side, double start, std::string const& folder) {
  std::string const path = folder + "/sheet.obj";
  WriteObj(side, path);
  std::vector<double> here, there;
  for (int i = 0; i < 11; ++i) {
    here.push_back(MeasureHere(path));
    there.push_back(Measure([&] {
                      importer::NReadModel const read(path, importer::GetImportLimits());
                      importer::neutral::NSceneView const scene(read.GetBlock());
                    }) -
                    start);
  }
  std::printf("%8d triangles  read %8.1f ms   handed over, too %8.1f ms   ratio %.3f\n",
              2 * side * side, GetMedian(here), GetMedian(there),
              GetMedian(there) / GetMedian(here));
}

// A reader that finds that there is nothing to read.
double MeasureStart(std::string const& folder) {
  std::string const path = folder + "/empty.obj";
  std::ofstream file(path);
  std::vector<double> times;
  for (int i = 0; i < 31; ++i) {
    times.push_back(Measure([&] {
      try {
        importer::NReadModel const read(path, importer::GetImportLimits());
      } catch (importer::NImportError const&) {
      }
    }));
  }
  return GetMedian(times);
}

}  // namespace

int main() {
  std::string folder = std::filesystem::temp_directory_path() / "corvanta_bench_XXXXXX";
  if (!mkdtemp(folder.data())) return 1;
  double const start = MeasureStart(folder);
  std::printf("start and end of the process %.1f ms, left out below\n", start);
  for (int const side : {128, 320, 700}) Compare(side, start, folder);
  std::filesystem::remove_all(folder);
}
