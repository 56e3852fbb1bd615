#include "corvanta/data/domain/projection/NProjectionNodeError.h"

#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::domain::projection {

NProjectionNodeError::~NProjectionNodeError() = default;

wchar_t const* NProjectionNodeError::GetErrorCodeImpl() const {
  return error_code::NE_PROJECTION_NODE;
}

}  // namespace corvanta::data::domain::projection
