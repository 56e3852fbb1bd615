#include "corvanta/importer/limits.h"

#include <unistd.h>

#include "corvanta/platform/child_process.h"

namespace corvanta::importer {

namespace {

// In whole MB.
std::uint64_t GetHalfOfMemory() {
  long const pages = sysconf(_SC_PHYS_PAGES);
  long const size = sysconf(_SC_PAGESIZE);
  if (pages <= 0 || size <= 0) return std::uint64_t{1} << 30;
  return (static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size)) >> 21 << 20;
}

struct Settings {
  NImportLimits limits{GetHalfOfMemory(), std::chrono::minutes(1)};
  std::wstring program;
};

Settings& GetSettings() {
  static Settings settings;
  return settings;
}

}  // namespace

NImportLimits GetImportLimits() { return GetSettings().limits; }
void SetImportLimits(NImportLimits const& limits) { GetSettings().limits = limits; }

std::wstring GetReaderProgram() {
  std::wstring const& program = GetSettings().program;
  return program.empty() ? platform::FindChildProgram(L"corvanta-read") : program;
}
void SetReaderProgram(std::wstring const& path) { GetSettings().program = path; }

}  // namespace corvanta::importer
