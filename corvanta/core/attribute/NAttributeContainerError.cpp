#include "corvanta/core/attribute/NAttributeContainerError.h"

namespace corvanta::core::attribute {

NAttributeContainerError::~NAttributeContainerError() = default;

wchar_t const* NAttributeContainerError::GetErrorCodeImpl() const {
  return L"Attribute Container Error";
}

}  // namespace corvanta::core::attribute
