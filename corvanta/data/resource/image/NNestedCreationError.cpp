#include "corvanta/data/resource/image/NNestedCreationError.h"

namespace corvanta::data::resource::image {

NNestedCreationError::~NNestedCreationError() = default;

wchar_t const* NNestedCreationError::GetErrorCodeImpl() const { return L"Nested Creation Error"; }

}  // namespace corvanta::data::resource::image
