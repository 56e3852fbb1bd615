#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>
#include <vector>

#include "app/play/NPlayer.h"
#include "app/scene/NStage.h"
#include "corvanta/data/animation/NAnimation.h"
#include "corvanta/importer/import.h"

namespace corvanta::app {

/// Leads the camera of a stage's view through a model, by a presentation. Its channels are that
/// camera's global position, its interest and its up.
class NTourPlayer : public NPlayer {
 public:
  /// Gives the camera the lens of the first camera of the file.
  /// Requires: `stage` shows the model, and is there as long as this.
  NTourPlayer(NStage& stage, importer::NImportedModel const& model, bool isReverse, bool repeats);

  std::vector<double> Sample() const override;
  std::string GetTitle() const override;
  double GetLength() const override;
  double GetMoment() const override;
  void Begin() override;
  void Advance(double seconds) override;

 private:
  NStage& m_stage;
  NOverview::Camera const m_camera;
  boost::intrusive_ptr<data::animation::NAnimation> m_presentation;
  bool const m_isReverse;
  bool const m_repeats;
};

}  // namespace corvanta::app
