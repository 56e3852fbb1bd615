#include "corvanta/core/error/NException.h"

#include <map>
#include <mutex>
#include <string>

#include "corvanta/core/error/NFileError.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::core::error {

namespace {

// The narrow forms of the codes asked for so far. Never destroyed: an exception may outlive every
// static.
struct NarrowCodes {
  std::mutex mutex;
  std::map<std::wstring, std::string, std::less<>> texts;
};

NarrowCodes& GetNarrowCodes() {
  static NarrowCodes& codes = *new NarrowCodes;
  return codes;
}

}  // namespace

NException::NException() noexcept = default;
NException::NException(NException const&) noexcept = default;
NException& NException::operator=(NException const&) noexcept = default;
NException::~NException() = default;

char const* NException::what() const noexcept {
  try {
    wchar_t const* const code = GetErrorCode();
    NarrowCodes& codes = GetNarrowCodes();
    std::scoped_lock const lock(codes.mutex);
    auto found = codes.texts.find(code);
    if (found == codes.texts.end()) found = codes.texts.emplace(code, text::ToNarrow(code)).first;
    return found->second.c_str();
  } catch (...) {  // out of memory
    return "corvanta::core::error::NException";
  }
}

NFileError::~NFileError() = default;

wchar_t const* NFileError::GetErrorCodeImpl() const { return L"File Error"; }

}  // namespace corvanta::core::error
