#pragma once

#include "corvanta/core/error/NException.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::projection {

/// A path isn't a target of the projection node that is asked about it.
class CORVANTA_API NProjectionNodeError : public core::error::NException {
 public:
  ~NProjectionNodeError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::data::domain::projection
