#include "corvanta/importer/reader/NFiles.h"

#include <unistd.h>

#include <utility>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/escape.h"

namespace corvanta::importer::reader {

namespace {

// By a seek: a child may not ask for the status of a file.
std::size_t GetSize(std::FILE* file) {
  long const at = std::ftell(file);
  std::fseek(file, 0, SEEK_END);
  long const size = std::ftell(file);
  std::fseek(file, at, SEEK_SET);
  return size < 0 ? 0 : static_cast<std::size_t>(size);
}

class Stream : public Assimp::IOStream {
 public:
  explicit Stream(NFile file) : m_file(std::move(file)) {}

  std::size_t Read(void* buffer, std::size_t size, std::size_t count) override {
    return std::fread(buffer, size, count, m_file.get());
  }
  std::size_t Write(void const*, std::size_t, std::size_t) override { return 0; }
  aiReturn Seek(std::size_t offset, aiOrigin origin) override {
    int const from = origin == aiOrigin_SET   ? SEEK_SET
                     : origin == aiOrigin_CUR ? SEEK_CUR
                                              : SEEK_END;
    return std::fseek(m_file.get(), static_cast<long>(offset), from) == 0 ? aiReturn_SUCCESS
                                                                          : aiReturn_FAILURE;
  }
  std::size_t Tell() const override { return static_cast<std::size_t>(std::ftell(m_file.get())); }
  std::size_t FileSize() const override { return GetSize(m_file.get()); }
  void Flush() override {}

 private:
  NFile const m_file;
};

}  // namespace

NFile OpenFile(NFileOpener& opener, std::string const& path) {
  int const descriptor = opener.Open(path);
  if (descriptor < 0) return nullptr;
  NFile file(fdopen(descriptor, "rb"));
  if (!file) close(descriptor);
  return file;
}

std::string ReadFile(NFileOpener& opener, std::string const& path) {
  NFile const file = OpenFile(opener, path);
  if (!file) throw NImportError("can't open \"" + path + '"');
  std::string bytes(GetSize(file.get()), '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
  return bytes;
}

Assimp::IOStream* NFiles::Open(char const* path, char const* mode) {
  if (mode[0] != 'r') return nullptr;
  NFile file = Find(path);
  return file ? new Stream(std::move(file)) : nullptr;
}

NFile NFiles::Find(std::string const& path) const {
  if (NFile file = OpenFile(m_opener, path)) return file;
  std::size_t const own = path.compare(0, m_folder.size(), m_folder) == 0 ? m_folder.size() : 0;
  std::string const plain = path.substr(0, own) + Unescape(path.substr(own));
  return plain == path ? nullptr : OpenFile(m_opener, plain);
}

}  // namespace corvanta::importer::reader
