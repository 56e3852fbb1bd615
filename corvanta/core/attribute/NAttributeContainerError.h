#pragma once

#include "corvanta/core/error/NException.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {

/// Leaves a constructor that can't create an attribute.
class CORVANTA_API NAttributeContainerError : public error::NException {
 public:
  ~NAttributeContainerError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::core::attribute
