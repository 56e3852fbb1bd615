#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/export.h"

/// What differs between systems. Paths are wide; one that holds a zero character names nothing.
namespace corvanta::platform {

struct NFileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
/// An open file, closed by its end.
using NFile = std::unique_ptr<std::FILE, NFileCloser>;

/// Opens a file for reading. Child processes don't inherit it.
/// Fails: null, also for what is there and isn't a regular file: reading from a pipe could wait for
/// ever.
CORVANTA_API NFile OpenFile(std::wstring const& path);

/// All bytes of a file, by one read where its size is known.
/// Fails: false, with `bytes` in any state, if it can't be opened or read.
CORVANTA_API bool ReadFile(std::wstring const& path, std::vector<unsigned char>& bytes);

/// Whether a file, a folder or anything else stands at `path`.
CORVANTA_API bool Exists(std::wstring const& path);

/// The size of a regular file in bytes.
/// Fails: -1.
CORVANTA_API long long GetFileSize(std::wstring const& path);

/// The folder that holds the library; in a static build, the program.
/// Fails: empty.
CORVANTA_API std::wstring GetLibraryFolder();

}  // namespace corvanta::platform
