#pragma once

#include "corvanta/export.h"

namespace corvanta::core::color {

/// A change of colours, as of a colour space or a tint.
class CORVANTA_API ColorTransform {
 public:
  ColorTransform() = default;
  ColorTransform(ColorTransform const&) = default;
  ColorTransform& operator=(ColorTransform const&) = default;
  virtual ~ColorTransform();

  /// Changes a colour in place. Colours run from 0 to 1, but any value may come.
  virtual void Transform(double& r, double& g, double& b) const = 0;
};

}  // namespace corvanta::core::color
