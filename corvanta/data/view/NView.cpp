#include "corvanta/data/view/NView.h"

#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/view/NViewListener.h"

namespace corvanta::data::view {

using domain::scene::NSceneNode;
using domain::scenegraph::NSceneGraphPath;
using domain::scenegraph::item::NSceneGraphCameraNode;

struct NView::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/view/view_attributes.def"
  NSceneGraphPath<NSceneGraphCameraNode> camera{};
  core::node::NNodeReference<NSceneNode> scene{};
};

#define CORVANTA_ROWS_BODIES NView
#include "corvanta/data/view/view_attributes.def"

NView::NView() : m_block(new Block{*this}) {}

NView::~NView() = default;

boost::intrusive_ptr<NSceneNode> NView::GetScene() const { return m_block->scene.Get(); }

core::node::NNodeReference<NSceneNode> const& NView::GetSceneRef() const noexcept {
  return m_block->scene;
}

void NView::SetScene(core::node::NNodeReference<NSceneNode> const& scene) {
  core::node::NNodeReference<NSceneNode> const set = scene;
  m_block->scene = set;
  NotifyObservers([&](NViewListener& listener) { listener.SignalSetScene(*this, set); });
}

NSceneGraphPath<NSceneGraphCameraNode> const& NView::GetCamera() const noexcept {
  return m_block->camera;
}

void NView::SetCamera(NSceneGraphPath<NSceneGraphCameraNode> const& camera) {
  NSceneGraphPath<NSceneGraphCameraNode> const set = camera;
  m_block->camera = set;
  NotifyObservers([&](NViewListener& listener) { listener.SignalSetCamera(*this, set); });
}

NViewListener::~NViewListener() = default;

}  // namespace corvanta::data::view
