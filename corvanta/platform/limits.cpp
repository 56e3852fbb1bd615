#include "corvanta/platform/limits.h"

#include <mutex>

#include "corvanta/platform/child_process.h"

namespace corvanta::platform {

namespace {

struct Settings {
  std::mutex mutex;
  NPictureLimits pictures;
  NArchiveLimits archives;
  std::wstring program;  // empty: the one beside the library
  bool isAllowed = true;
};

Settings& GetSettings() {
  static Settings& settings = *new Settings;
  return settings;
}

template <typename Type>
Type Get(Type Settings::*member) {
  std::scoped_lock const lock(GetSettings().mutex);
  return GetSettings().*member;
}

template <typename Type>
void Set(Type Settings::*member, Type const& value) {
  std::scoped_lock const lock(GetSettings().mutex);
  GetSettings().*member = value;
}

}  // namespace

NPictureLimits GetPictureLimits() { return Get(&Settings::pictures); }
void SetPictureLimits(NPictureLimits const& limits) { Set(&Settings::pictures, limits); }
NArchiveLimits GetArchiveLimits() { return Get(&Settings::archives); }
void SetArchiveLimits(NArchiveLimits const& limits) { Set(&Settings::archives, limits); }

std::wstring GetDecoderProgram() {
  std::wstring const set = Get(&Settings::program);
  if (!set.empty()) return set;
  static std::wstring const& found = *new std::wstring(FindChildProgram(L"corvanta-decode"));
  return found;
}

void SetDecoderProgram(std::wstring const& path) { Set(&Settings::program, path); }
void SetDecoderProgramAllowed(bool allowed) { Set(&Settings::isAllowed, allowed); }
bool IsDecoderProgramAllowed() { return Get(&Settings::isAllowed); }

}  // namespace corvanta::platform
