#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "app/scene/NOverview.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/view/NView.h"

namespace corvanta::app {

/// A tree set up to be seen: a scene with an environment, which is lit by the tree's own lights or,
/// without one, by the default rig of lights, and a view of it through a camera that sees the
/// whole.
class NStage {
 public:
  /// Requires: `tree` has a root, below which the camera is put.
  NStage(data::document::NDocument& document, NOverview::Tree const& tree);
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

 private:
  void Light();
  void AddDefaultLights();

  data::document::NDocument& m_document;
  bool const m_hasInitialized;
  NOverview::Tree m_tree;
  NOverview m_overview;
  boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> m_environment;
  boost::intrusive_ptr<data::view::NView> m_view;
};

}  // namespace corvanta::app
