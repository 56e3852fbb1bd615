#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "app/scene/NOverview.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/view/NView.h"

namespace corvanta::app {

/// Which lights shine on a stage.
enum NStageLights {
  NSL_AUTOMATIC,  ///< the tree's own, with a soft fill where they leave most in the dark
  NSL_FILE,       ///< the tree's own alone
  NSL_DEFAULT,    ///< the default rig alone
  NSL_BOTH,       ///< the tree's own and the default rig
};

/// A tree set up to be seen: a scene with an environment, which is lit by the tree's own lights or,
/// without one, by the default rig of lights, and a view of it through a camera that sees the
/// whole. The exposure of the environment is such that no lamp makes a white model's matt shades
/// white.
class NStage {
 public:
  /// Requires: `tree` has a root, below which the camera is put.
  NStage(data::document::NDocument& document, NOverview::Tree const& tree,
         NStageLights lights = NSL_AUTOMATIC);
  NStage(NStage const&) = delete;
  NStage& operator=(NStage const&) = delete;
  ~NStage();

  NOverview& GetOverview() { return m_overview; }
  data::domain::scene::NSceneNode& GetScene() const { return m_overview.GetScene(); }
  data::domain::environment::NEnvironmentNode& GetEnvironment() const { return *m_environment; }
  data::view::NView& GetView() const { return *m_view; }

  /// The first camera item of that name, or that places a camera of that name.
  /// Fails: an empty path if there is none.
  NOverview::Camera FindCamera(std::wstring const& name) const;

  /// Makes one colour all that is behind the models.
  /// Units: linear light.
  void SetBackground(VX_Math::Vec3 const& color);
  /// The same with the environment's own colour.
  void HideBackground();
  /// Makes all models wires.
  void SetWired();

 private:
  void Light(NStageLights lights, VX_Math::Box3 const& box);
  /// Makes the default rig the light of `environment`.
  void AddDefaultLights(data::domain::environment::NEnvironmentNode& environment);
  /// Adds the default rig, that much weaker, to what shines already.
  void AddFill(double strength);

  data::document::NDocument& m_document;
  bool const m_hasInitialized;
  NOverview::Tree m_tree;
  NOverview m_overview;
  boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> m_environment;
  boost::intrusive_ptr<data::view::NView> m_view;
};

}  // namespace corvanta::app
