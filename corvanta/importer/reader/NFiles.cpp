#include "corvanta/importer/reader/NFiles.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <new>
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

std::string ReadAll(std::FILE& file) {
  std::string bytes(GetSize(&file), '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), &file));
  return bytes;
}

class Stream : public Assimp::IOStream {
 public:
  explicit Stream(NFile file) : m_file(std::move(file)) {}
  /// Reads a text in place of a file.
  explicit Stream(std::string text)
      : m_text(std::move(text)), m_file(fmemopen(m_text.data(), m_text.size(), "rb")) {
    if (!m_file) throw std::bad_alloc();
  }

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
  std::string m_text;
  NFile const m_file;
};

bool IsObj(std::string const& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension == ".obj";
}

/// Puts a 0 before the numbers of an OBJ file's vertices that begin with their point: Assimp counts
/// none of them, and leaves the vertex out.
std::string CompleteNumbers(std::string const& text) {
  std::string result;
  result.reserve(text.size() + text.size() / 16);
  bool isLineBegun = false, isOfVertex = false;
  auto const at = [&text](std::size_t i) { return i < text.size() ? text[i] : '\n'; };
  auto const isBlank = [](char c) { return c == ' ' || c == '\t'; };
  for (std::size_t i = 0; i != text.size(); ++i) {
    char const c = text[i];
    if (!isLineBegun && !isBlank(c)) {
      isLineBegun = true;
      isOfVertex = c == 'v';
    }
    if (c == '\n') isLineBegun = false;
    if (isOfVertex && c == '.' && at(i + 1) >= '0' && at(i + 1) <= '9') {
      bool const isSigned = at(i - 1) == '-' || at(i - 1) == '+';
      if (isBlank(at(i - (isSigned ? 2 : 1)))) result += '0';
    }
    result += c;
  }
  return result;
}

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
  return ReadAll(*file);
}

Assimp::IOStream* NFiles::Open(char const* path, char const* mode) {
  if (mode[0] != 'r') return nullptr;
  NFile file = Find(path);
  if (!file) return nullptr;
  if (!IsObj(path)) return new Stream(std::move(file));
  std::string const text = ReadAll(*file);
  std::string completed = CompleteNumbers(text);
  if (completed.size() != text.size()) return new Stream(std::move(completed));
  std::rewind(file.get());
  return new Stream(std::move(file));
}

NFile NFiles::Find(std::string const& path) const {
  if (NFile file = OpenFile(m_opener, path)) return file;
  std::size_t const own = path.compare(0, m_folder.size(), m_folder) == 0 ? m_folder.size() : 0;
  std::string const plain = path.substr(0, own) + Unescape(path.substr(own));
  return plain == path ? nullptr : OpenFile(m_opener, plain);
}

}  // namespace corvanta::importer::reader
