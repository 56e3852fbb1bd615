#pragma once

#include <cstdint>

namespace corvanta::data::operators::animation {

/// A key of a curve: its place on the curve's axis, and the value there.
struct NKeyData {
  double time = 0.0;  ///< frames, for a curve in an animation node
  double value = 0.0;
  std::int64_t tag = 0;  ///< for the caller: kept and copied, read by nothing in here
};

}  // namespace corvanta::data::operators::animation
