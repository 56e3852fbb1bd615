#include "app/play/panels.h"

#include <algorithm>
#include <cmath>

namespace corvanta::app {

namespace {

constexpr double kSmallestShare = 1.0 / 20.0;

// Curves that the panel's range would make flat go to a panel behind it, and so on.
void Part(std::vector<NPanel>& panels, NPanel panel) {
  while (!panel.curves.empty()) {
    double const least = panel.GetRange().GetSize() * kSmallestShare;
    auto parted = std::stable_partition(
        panel.curves.begin(), panel.curves.end(), [least](NPanel::Curve const& curve) {
          return curve.range.IsFlat() || curve.range.GetSize() >= least;
        });
    // All may be small and lie far apart.
    if (parted == panel.curves.begin()) ++parted;
    panels.push_back({panel.item, panel.kind, {panel.curves.begin(), parted}});
    panel.curves.erase(panel.curves.begin(), parted);
  }
}

}  // namespace

bool NRange::Holds(double value) { return std::abs(value) <= 1e300; }

void NRange::Add(double value) {
  if (!Holds(value)) return;
  least = std::min(least, value);
  largest = std::max(largest, value);
}

void NRange::Add(NRange const& range) {
  least = std::min(least, range.least);
  largest = std::max(largest, range.largest);
}

bool NRange::IsFlat() const {
  return IsEmpty() || GetSize() <= 1e-6 * std::max({std::abs(least), std::abs(largest), 1e-3});
}

NRange NPanel::GetRange() const {
  NRange range;
  for (Curve const& curve : curves) range.Add(curve.range);
  return range;
}

bool NPanel::IsFlat() const {
  return std::all_of(curves.begin(), curves.end(),
                     [](Curve const& curve) { return curve.range.IsFlat(); });
}

std::vector<NPanel> ArrangePanels(std::vector<NPlayer::Channel> const& channels,
                                  NRecording const& recording) {
  std::vector<NPanel> whole;
  for (std::size_t i = 0; i != channels.size(); ++i) {
    auto const& [item, attribute] = channels[i];
    auto const dot = attribute.rfind('.');
    std::string const kind = attribute.substr(0, dot);
    if (whole.empty() || whole.back().item != item || whole.back().kind != kind) {
      whole.push_back({item, kind, {}});
    }
    NRange range;
    for (double const value : recording.GetValues(i)) range.Add(value);
    std::string const label = dot == std::string::npos ? attribute : attribute.substr(dot + 1);
    whole.back().curves.push_back({label, i, range});
  }
  std::vector<NPanel> panels;
  for (NPanel& panel : whole) Part(panels, std::move(panel));
  return panels;
}

}  // namespace corvanta::app
