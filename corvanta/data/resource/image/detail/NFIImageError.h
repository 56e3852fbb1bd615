#pragma once

#include "corvanta/core/error/NException.h"

namespace corvanta::data::resource::image::detail {

/// A file can't be decoded.
class CORVANTA_API NFIImageError : public core::error::NException {
 public:
  ~NFIImageError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::data::resource::image::detail
