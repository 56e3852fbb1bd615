#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "app/play/NPlayer.h"
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/data/domain/animation/NAnimationNode.h"
#include "corvanta/data/timeline/NTimeLine.h"
#include "corvanta/importer/deform/NDeformer.h"

namespace corvanta::app {

/// Plays an animation node by a timeline. Its channels are the attributes that curves move.
class NTimeLinePlayer : public NPlayer {
 public:
  /// `deformer` follows each move; null where there is none.
  NTimeLinePlayer(data::domain::animation::NAnimationNode& animation, bool isReverse, bool repeats,
                  std::shared_ptr<importer::NDeformer> deformer = nullptr);

  std::vector<double> Sample() const override;
  std::string GetTitle() const override;
  double GetLength() const override;
  double GetMoment() const override;
  void Begin() override;
  void Advance(double seconds) override;

 private:
  boost::intrusive_ptr<data::domain::animation::NAnimationNode> const m_animation;
  boost::intrusive_ptr<data::timeline::NTimeLine> const m_timeline;
  std::vector<boost::intrusive_ptr<core::attribute::NAttributeHost>> m_hosts;
  std::vector<core::attribute::NAttribute const*> m_attributes;  // of the hosts
  std::shared_ptr<importer::NDeformer> const m_deformer;
};

}  // namespace corvanta::app
