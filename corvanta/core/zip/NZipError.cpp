#include "corvanta/core/zip/NZipError.h"

namespace corvanta::core::zip {

NZipError::~NZipError() = default;

wchar_t const* NZipError::GetErrorCodeImpl() const { return L"Zip Error"; }

NZipPassError::~NZipPassError() = default;

wchar_t const* NZipPassError::GetErrorCodeImpl() const { return L"Zip Pass Error"; }

}  // namespace corvanta::core::zip
