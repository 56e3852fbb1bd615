#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"

#include <cwchar>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/detail/attribute_effects.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/scenegraph/coord_conversion.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeListener.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::data::domain::scenegraph::tree {

namespace {

using core::node::NNodeReference;
using item::NSceneGraphItemNode;

}  // namespace

struct NSceneGraphTreeNode::Block {
  core::attribute::NAttributeHost& host;
  using enum domain::detail::NAttributeEffect;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/scenegraph/tree/tree_attributes.def"

  VX_Math::Matrix control{};
  bool isControlDirty = true;
  bool isTessellated = false;
  NNodeReference<NSceneGraphItemNode> root{};
};

#define CORVANTA_ROWS_BODIES NSceneGraphTreeNode
#include "corvanta/data/domain/scenegraph/tree/tree_attributes.def"

NSceneGraphTreeNode::NSceneGraphTreeNode(core::node::NNodeID const& id,
                                         core::domain::NDomainBase* domain,
                                         events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_SCENEGRAPH_TREE)),
      m_block(new Block{*this}) {}

NSceneGraphTreeNode::~NSceneGraphTreeNode() = default;

boost::intrusive_ptr<NSceneGraphItemNode> NSceneGraphTreeNode::GetRoot() const {
  return m_block->root.Get();
}

NNodeReference<NSceneGraphItemNode> const& NSceneGraphTreeNode::GetRootRef() const {
  return m_block->root;
}

void NSceneGraphTreeNode::SetRoot(NNodeReference<NSceneGraphItemNode> const& root) {
  auto const held = core::reference_countable::Hold(*this);
  NNodeReference<NSceneGraphItemNode> const old = m_block->root;
  m_block->root = root;
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnReference(*this, events::NRK_ROOT, old, m_block->root);
  auto const oldForHosts = old.Get();
  {
    // A host that a listener's exception, or its edit, keeps from being notified is forgotten all
    // the same.
    core::detail::ScopeExit const forget([&oldForHosts] {
      if (oldForHosts) oldForHosts->RemoveStrayReferrers();
    });
    Hosts::NotifyObservers([&](auto& host) { host.OnRootChange(oldForHosts); });
  }
  auto const oldForEvents = old.Get();
  Events::NotifyObservers([&](auto& listener) { listener.SignalRootChange(*this, oldForEvents); });
}

VX_Math::Matrix const& NSceneGraphTreeNode::GetControlTransform() const {
  Block& block = *m_block;
  if (block.isControlDirty) {
    auto const unit = static_cast<float>(GetUnit());
    block.control.SetScale(VX_Math::Vec3(unit, unit, unit));
    if (GetCoordConversion() == CCV_ZUP_TO_YUP) {
      block.control.MultRight(
          VX_Math::Matrix(VX_Math::Quaternion(VX_Math::Vec3(0, 0, 1), VX_Math::Vec3(0, 1, 0))));
    }
    block.isControlDirty = false;
  }
  return block.control;
}

bool NSceneGraphTreeNode::IsTessellated() const { return m_block->isTessellated; }

void NSceneGraphTreeNode::SetIsTessellated(bool isTessellated) {
  m_block->isTessellated = isTessellated;
}

void NSceneGraphTreeNode::CopyTo(NSceneGraphTreeNode& target) const {
  NNodeReference<NSceneGraphItemNode> const root = m_block->root;
  auto const held = core::reference_countable::Hold(target);
  core::detail::NChangeGroup const group(target.GetRecorder());
  CopyNodeTo(target);
  target.SetRoot(root);
}

void NSceneGraphTreeNode::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  bool const isControl = core::attribute::detail::GetNameEffects(attribute.GetNameIndex()) &
                         domain::detail::NAE_CONTROL;
  auto const held = core::reference_countable::Hold(*this);
  core::detail::NChangeScope const change(GetRecorder());
  // Listeners run before the caches are marked, here and in the hosts. When one throws, the rest
  // isn't notified, but what the library keeps is marked.
  try {
    NNode::OnAttributeChangeImpl(attribute);
    if (!isControl) return;
    m_block->isControlDirty = true;
    Hosts::NotifyObservers([](auto& host) { host.OnControlTransformChange(); });
  } catch (...) {
    if (isControl) {
      m_block->isControlDirty = true;
      Hosts::NotifyObservers([](auto& host) {
        if (dynamic_cast<item::NSceneGraphReferenceNode*>(&host)) host.OnControlTransformChange();
      });
    }
    throw;
  }
}

NSceneGraphTreeListener::~NSceneGraphTreeListener() = default;

NSceneGraphTreeDomain::NSceneGraphTreeDomain(
    core::domain::NDomainManager const* manager,
    events::attribute_change::NMultiplexer const* multiplexer,
    events::scene_graph_tree::NMultiplexer* trees)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_SCENEGRAPH_TREE)),
      m_trees(trees) {}

NSceneGraphTreeDomain::~NSceneGraphTreeDomain() = default;

wchar_t const* NSceneGraphTreeDomain::GetTypeImpl() const { return DT_SCENEGRAPH_TREE; }

bool NSceneGraphTreeDomain::InitializeNode(NSceneGraphTreeNode& node) const {
  return Attach<events::scene_graph_tree::NListener>(m_trees, node);
}

VX_Math::Box3 GetBoundingBox(NSceneGraphTreeNode const& tree) {
  auto const held = core::reference_countable::Hold(tree);
  auto const root = tree.GetRoot();
  if (!root) return {};
  VX_Math::Matrix const& control = tree.GetControlTransform();
  VX_Math::Matrix const global = root->GetTransform() * control;
  VX_Math::Box3 box = root->GetBoundingBox(global, control);
  box.Transform(global);
  return box;
}

}  // namespace corvanta::data::domain::scenegraph::tree

namespace corvanta::data::domain::scenegraph {

bool IsSceneGraphCoordConversionAttribute(wchar_t const* name) {
  return name != nullptr && std::wcscmp(name, tree::AN_COORD_CONVERSION) == 0;
}

}  // namespace corvanta::data::domain::scenegraph
