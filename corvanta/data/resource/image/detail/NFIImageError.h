#pragma once

#include <string>
#include <utility>

#include "corvanta/core/error/NException.h"

namespace corvanta::data::resource::image::detail {

/// A file can't be decoded.
class CORVANTA_API NFIImageError : public core::error::NException {
 public:
  explicit NFIImageError(std::string reason = {}) : m_reason(std::move(reason)) {}
  ~NFIImageError() override;

  /// Why, in a few words; empty if nobody said.
  std::string const& GetReason() const { return m_reason; }

 private:
  wchar_t const* GetErrorCodeImpl() const override;

  std::string m_reason;
};

}  // namespace corvanta::data::resource::image::detail
