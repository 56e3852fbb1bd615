#pragma once

#include "corvanta/core/error/NException.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph {

/// A walk that follows references was given up; `what()` says why. See walk_budget.h.
class CORVANTA_API NSceneGraphWalkError : public core::error::NException {
 public:
  enum Reason {
    kTooManyVisits,  // more than the budget allows
    kTooDeep,        // references are nested deeper than the stack carries
  };

  explicit NSceneGraphWalkError(Reason reason) noexcept : m_reason(reason) {}
  NSceneGraphWalkError(NSceneGraphWalkError const&) noexcept = default;
  NSceneGraphWalkError& operator=(NSceneGraphWalkError const&) noexcept = default;
  ~NSceneGraphWalkError() override;

  Reason GetReason() const noexcept { return m_reason; }
  /// One line, in ASCII.
  char const* what() const noexcept override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;

  Reason m_reason;
};

}  // namespace corvanta::data::domain::scenegraph
