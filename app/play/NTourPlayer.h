#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>
#include <vector>

#include "app/import/import.h"
#include "app/play/NPlayer.h"
#include "app/scene/NDocument.h"
#include "corvanta/data/animation/NAnimation.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"

namespace corvanta::app {

/// Leads a camera of its own through a model, by a presentation. Its channels are that camera's
/// global position, its interest and its up.
class NTourPlayer : public NPlayer {
 public:
  using CameraPath = data::domain::scenegraph::NSceneGraphPath<
      data::domain::scenegraph::item::NSceneGraphCameraNode>;

  /// Puts a camera below the root of the model's tree, with the lens of the first camera of the
  /// file.
  NTourPlayer(NDocument& document, NImportedModel const& model, bool isReverse, bool repeats);

  /// The camera that is led.
  CameraPath const& GetCamera() const { return m_camera; }

  std::vector<double> Sample() const override;
  std::string GetTitle() const override;
  double GetLength() const override;
  double GetMoment() const override;
  void Begin() override;
  void Advance(double seconds) override;

 private:
  boost::intrusive_ptr<data::domain::camera::NCameraNode> const m_lens;
  CameraPath m_camera;
  boost::intrusive_ptr<data::animation::NAnimation> m_presentation;
  bool const m_isReverse;
};

}  // namespace corvanta::app
