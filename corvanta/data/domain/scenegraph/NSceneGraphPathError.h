#pragma once

#include "corvanta/core/error/NException.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph {

/// A path names something that has gone.
class CORVANTA_API NSceneGraphPathError : public core::error::NException {
 public:
  ~NSceneGraphPathError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::data::domain::scenegraph
