#include "app/import/NReadModel.h"

#include <fcntl.h>

#include <system_error>

#include "app/import/NImportError.h"
#include "app/import/reader/NModelReader.h"

namespace corvanta::app {

namespace {

class Opener : public reader::NFileOpener {
 public:
  int Open(std::string const& path) override { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }
};

}  // namespace

NReadModel::NReadModel(std::filesystem::path const& path) {
  std::error_code error;
  auto const status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) throw NImportError("no such file");
  if (!std::filesystem::is_regular_file(status)) throw NImportError("not a file");
  Opener opener;
  reader::NModelReader const reader(opener, path);
  m_block.resize(reader.GetSize());
  reader.Write(m_block.data());
}

}  // namespace corvanta::app
