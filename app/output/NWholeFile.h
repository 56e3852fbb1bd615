#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace corvanta::app {

/// A file that is written bit by bit and there as a whole or not at all: what stood at its place
/// stays until Commit, and then gives its mode, owner and group to what replaces it. A link stays;
/// what it leads to is replaced. What isn't a plain file, such as a pipe, is written to as it is.
///
/// Until then its content has no name, and goes with the process however that ends; where the file
/// system can't have that, it stands beside the place as NAME.PID.part.
class NWholeFile {
 public:
  /// Fails: throws std::runtime_error if it can't be written: to a file that is read-only, also for
  /// who may write to all files, or whose owner can't be kept; into a folder that isn't there,
  /// which the text names.
  explicit NWholeFile(std::filesystem::path const& path);
  NWholeFile(NWholeFile const&) = delete;
  NWholeFile& operator=(NWholeFile const&) = delete;
  /// Without Commit nothing remains.
  ~NWholeFile();

  /// Fails: throws the same, without having opened or made anything.
  static void Check(std::filesystem::path const& path);
  static bool IsStdout(std::filesystem::path const& path);

  std::ostream& GetStream();

  /// Fails: throws std::runtime_error, and leaves what was there, if not all could be written.
  void Commit();

 private:
  void OpenAside();
  void Close();

  std::filesystem::path m_place;
  std::filesystem::path m_aside;  // empty for what isn't a plain file
  int m_descriptor = -1;          // of what is written aside
  bool m_isNamed = false;         // as m_aside
  bool m_isStdout = false;
  std::ofstream m_stream;
};

/// Whether a file can be written to `path`, as far as can be told before; an empty one is none.
/// Prints the reason otherwise.
bool CanWrite(std::string const& path);

}  // namespace corvanta::app
