#include "app/output/png_file.h"

#include "app/output/NWholeFile.h"

namespace corvanta::app {

void WritePng(std::filesystem::path const& path, renderer::NPixels const& pixels) {
  // It is opened first: a picture takes longer.
  NWholeFile file(path);
  file.GetStream() << renderer::EncodePng(pixels);
  file.Commit();
}

}  // namespace corvanta::app
