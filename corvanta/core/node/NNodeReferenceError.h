#pragma once

#include "corvanta/core/error/NException.h"

namespace corvanta::core::node {

/// A node reference can't be followed. Code "Node Reference Error". The library catches it where a
/// reference may come from outside, and never throws it: its own references give null.
class CORVANTA_API NNodeReferenceError : public error::NException {
 public:
  ~NNodeReferenceError() override;

 private:
  wchar_t const* GetErrorCodeImpl() const override;
};

}  // namespace corvanta::core::node
