#pragma once

namespace corvanta::data::domain::projection {

/// Where the coordinates u, v and w go, two bits each: bits 5 and 4 for u, 3 and 2 for v, 1 and 0
/// for w. The mappings act on the second of these values alone; any other counts as the first.
enum NUVWOrder : long {
  NUVWO_UVW = 0x24,
  NUVWO_VUW = 0x18,
};

namespace detail {
/// Exchanges the fields that begin at the bits `first` and `second`.
constexpr NUVWOrder SwapFields(long order, int first, int second) noexcept {
  long const difference = ((order >> first) ^ (order >> second)) & 3;
  return static_cast<NUVWOrder>(order ^ (difference << first) ^ (difference << second));
}
}  // namespace detail

/// Exchange two coordinates of an order, which may be given as a number.
constexpr NUVWOrder SwapUV(long order) noexcept { return detail::SwapFields(order, 4, 2); }
constexpr NUVWOrder SwapVW(long order) noexcept { return detail::SwapFields(order, 2, 0); }
constexpr NUVWOrder SwapWU(long order) noexcept { return detail::SwapFields(order, 0, 4); }

}  // namespace corvanta::data::domain::projection
