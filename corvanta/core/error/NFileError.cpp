#include "corvanta/core/error/NFileError.h"

namespace corvanta::core::error {

NFileError::~NFileError() = default;

wchar_t const* NFileError::GetErrorCodeImpl() const { return L"File Error"; }

}  // namespace corvanta::core::error
