#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace VX_Math::detail {

/// Four floats that are worked on at once.
using Float4 = float __attribute__((vector_size(16)));
/// Four comparisons' outcomes: all bits or none.
using Int4 = std::int32_t __attribute__((vector_size(16)));

inline Float4 Spread(float value) noexcept { return Float4{value, value, value, value}; }

#if defined(__SSE2__)
/// The lesser and the greater of each lane; `b` where one isn't a number.
inline Float4 Min(Float4 a, Float4 b) noexcept { return _mm_min_ps(a, b); }
inline Float4 Max(Float4 a, Float4 b) noexcept { return _mm_max_ps(a, b); }
/// A bit a lane, the first lane the lowest.
inline unsigned GetMask(Int4 lanes) noexcept {
  return static_cast<unsigned>(_mm_movemask_ps(reinterpret_cast<__m128>(lanes)));
}
#else
inline Float4 Min(Float4 a, Float4 b) noexcept { return a < b ? a : b; }
inline Float4 Max(Float4 a, Float4 b) noexcept { return a > b ? a : b; }
inline unsigned GetMask(Int4 lanes) noexcept {
  return (static_cast<unsigned>(lanes[0]) & 1u) | (static_cast<unsigned>(lanes[1]) & 2u) |
         (static_cast<unsigned>(lanes[2]) & 4u) | (static_cast<unsigned>(lanes[3]) & 8u);
}
#endif

}  // namespace VX_Math::detail
