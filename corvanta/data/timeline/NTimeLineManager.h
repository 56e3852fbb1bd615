#pragma once

#include <boost/intrusive_ptr.hpp>
#include <set>

#include "corvanta/data/timeline/NTimeLine.h"
#include "corvanta/export.h"

namespace corvanta::data::timeline {

/// A plain collection of timelines for a frame loop; it advances nothing by itself, and keeps its
/// timelines alive.
class CORVANTA_API NTimeLineManager {
 public:
  NTimeLineManager();
  ~NTimeLineManager();

  /// Fails: false if `timeline` is in the collection.
  bool AddTimeLine(NTimeLine& timeline);
  /// Fails: false if `timeline` isn't in the collection.
  bool RemoveTimeLine(NTimeLine& timeline);
  void ClearAll();
  /// The timelines in order of creation.
  std::set<boost::intrusive_ptr<NTimeLine>> const& GetTimeLines() const noexcept {
    return m_timelines;
  }

 private:
  std::set<boost::intrusive_ptr<NTimeLine>> m_timelines;
};

}  // namespace corvanta::data::timeline
