#include "app/output/whole_file.h"

#include <stdexcept>

#include "app/output/NWholeFile.h"

namespace corvanta::app {

bool WriteWholeFile(std::filesystem::path const& path, std::string_view bytes) {
  try {
    NWholeFile file(path);
    file.GetStream() << bytes;
    file.Commit();
    return true;
  } catch (std::runtime_error const&) {
    return false;
  }
}

}  // namespace corvanta::app
