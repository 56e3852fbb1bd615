#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "app/play/NPlayer.h"
#include "app/play/NRecording.h"

namespace corvanta::app {

/// The least and the largest of some values; empty at first. Values that aren't finite don't count.
struct NRange {
  double least = std::numeric_limits<double>::infinity();
  double largest = -std::numeric_limits<double>::infinity();

  /// Whether a value can be drawn: finite, and not so large that differences aren't.
  static bool Holds(double value);
  void Add(double value);
  void Add(NRange const& range);
  bool IsEmpty() const { return least > largest; }
  /// 0 for an empty one.
  double GetSize() const { return IsEmpty() ? 0.0 : largest - least; }
  /// Whether all is the same but for rounding.
  bool IsFlat() const;
};

/// Curves that share their axes.
struct NPanel {
  struct Curve {
    std::string label;
    std::size_t channel;
    NRange range;
  };

  std::string item;
  std::string kind;  // what the attributes' names begin with: "rotation"
  std::vector<Curve> curves;

  NRange GetRange() const;
  bool IsFlat() const;
};

/// The channels in panels: those of one item and one kind together, but for curves that move by
/// less than a twentieth of what the panel spans: they have one of their own.
std::vector<NPanel> ArrangePanels(std::vector<NPlayer::Channel> const& channels,
                                  NRecording const& recording);

}  // namespace corvanta::app
