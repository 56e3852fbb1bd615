// Decoding a picture in a process of its own, against the same decoder in this process: 1.15 times
// at most; and the start of that process: 8 ms at most, once. Prints medians and ratios; what is
// copied rather than decoded, such as a BMP of a few pixels, costs the way there and back besides.
#include <FreeImage.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"

namespace {

using namespace corvanta;
using std::chrono::steady_clock;

template <typename Work>
double Measure(Work const& work) {
  auto const start = steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(steady_clock::now() - start).count();
}

void DecodeThere(std::string const& path) {
  std::string reason;
  if (platform::LoadPicture(core::text::ToWide(path), &reason)) return;
  std::fprintf(stderr, "%s: %s\n", path.c_str(), reason.c_str());
  std::exit(1);
}

double GetMedian(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

// A picture as a camera gives it: smooth, with some grain.
void Write(FREE_IMAGE_FORMAT format, int side, std::string const& path) {
  FIBITMAP* const bitmap = FreeImage_Allocate(side, side, 24);
  unsigned state = 1;
  for (int y = 0; y < side; ++y) {
    BYTE* const row = FreeImage_GetScanLine(bitmap, y);
    for (int x = 0; x < 3 * side; ++x) {
      state = state * 1664525 + 1013904223;
      row[x] = static_cast<BYTE>((x * 85 / side + y * 128 / side) + (state >> 29));
    }
  }
  FreeImage_Save(format, bitmap, path.c_str(), 0);
  FreeImage_Unload(bitmap);
}

void Compare(char const* name, FREE_IMAGE_FORMAT format, int side, std::string const& folder) {
  std::string const path = folder + "/picture." + name;
  Write(format, side, path);
  std::vector<double> here, there;
  // Long enough that other work on the machine can't disturb all of them.
  constexpr std::size_t kLeast = 7, kMost = 999;
  constexpr std::chrono::seconds kEnough{2};
  auto const start = steady_clock::now();
  while (here.size() < kLeast || (here.size() < kMost && steady_clock::now() - start < kEnough)) {
    here.push_back(Measure([&] { FreeImage_Unload(FreeImage_Load(format, path.c_str(), 0)); }));
    there.push_back(Measure([&] { DecodeThere(path); }));
  }
  std::printf(
      "%-5s %5d x %-5d  in this process %8.3f ms   in its own %8.3f ms   ratio %.3f, of the best "
      "%.3f\n",
      name, side, side, GetMedian(here), GetMedian(there), GetMedian(there) / GetMedian(here),
      *std::ranges::min_element(there) / *std::ranges::min_element(here));
}

}  // namespace

int main() {
  std::string folder = std::filesystem::temp_directory_path() / "corvanta_bench_XXXXXX";
  if (!mkdtemp(folder.data()) || !std::freopen("/dev/null", "w", stderr)) return 1;
  // The largest is handed over without a copy.
  for (int const side : {256, 1024, 4096, 6000}) {
    Compare("jpg", FIF_JPEG, side, folder);
    Compare("png", FIF_PNG, side, folder);
    Compare("tif", FIF_TIFF, side, folder);
    Compare("bmp", FIF_BMP, side, folder);
  }
  std::string const small = folder + "/small.bmp";
  Write(FIF_BMP, 16, small);
  std::vector<double> first, later;
  for (int i = 0; i < 99; ++i) {
    platform::EndDecoderProgram();
    first.push_back(Measure([&] { DecodeThere(small); }));
    later.push_back(Measure([&] { DecodeThere(small); }));
  }
  std::printf("start of the process %.3f ms, at best %.3f ms; a question and its answer %.3f ms\n",
              GetMedian(first) - GetMedian(later), *std::ranges::min_element(first),
              GetMedian(later));
  std::filesystem::remove_all(folder);
}
