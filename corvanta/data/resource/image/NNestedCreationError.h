#pragma once

#include "corvanta/core/error/NException.h"

namespace corvanta::data::resource::image {

/// `CreateImage` was called while a call of it was under way on the same thread. Code "Nested
/// Creation Error".
class CORVANTA_API NNestedCreationError : public core::error::NException {
 public:
  ~NNestedCreationError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::data::resource::image
