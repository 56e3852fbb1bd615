#include "app/scene/model_box.h"

#include <cmath>
#include <cstddef>
#include <exception>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::app {

namespace {

using data::domain::scenegraph::item::NSceneGraphItemNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using data::domain::scenegraph::tree::NSceneGraphTreeNode;

class Measurer : private data::domain::scenegraph::NSceneGraphTraverser {
 public:
  explicit Measurer(NOverview::Tree const& tree) { Start(*tree, nullptr); }

  VX_Math::Box3 const& GetBox() const { return m_box; }

 private:
  using NSceneGraphTraverser::After;
  using NSceneGraphTraverser::Before;

  // A root's own visibility counts for nothing.
  void BeforeCommon(NSceneGraphItemNode& item, void const*, NCheckPoints const&) override {
    if (m_hiddenDepth != 0 || !(m_isRoot || item.IsVisible())) ++m_hiddenDepth;
    m_isRoot = false;
  }
  void AfterCommon(NSceneGraphItemNode&, void const*, NCheckPoints const&) override {
    if (m_hiddenDepth != 0) --m_hiddenDepth;
  }
  void Before(NSceneGraphTreeNode&, void const*, NCheckPoints const&) override { m_isRoot = true; }
  void After(NSceneGraphTreeNode&, void const*, NCheckPoints const&) override { m_isRoot = false; }
  void After(NSceneGraphModelNode& model, void const*, NCheckPoints const& checkPoints) override {
    if (m_hiddenDepth != 0) return;
    VX_Math::Box3 box = model.GetBoundingBoxWithoutChildren();
    if (box.IsEmpty()) return;
    try {
      VX_Math::Matrix global;
      data::domain::scenegraph::NSceneGraphPath<NSceneGraphModelNode>(model, GetTree(), checkPoints)
          .GetGlobalTransform(global);
      box.Transform(global);
      m_box.ExtendBy(box);
    } catch (std::exception const&) {
      // An item that two lists hold, and whose parent leads elsewhere.
    }
  }

  VX_Math::Box3 m_box;
  std::size_t m_hiddenDepth = 0;
  bool m_isRoot = false;
};

}  // namespace

VX_Math::Box3 GetModelBox(NOverview::Tree const& tree) {
  VX_Math::Box3 const box = Measurer(tree).GetBox();
  VX_Math::Vec3 const size = box.max - box.min;
  bool const isKnown = !box.IsEmpty() && std::isfinite(size.x + size.y + size.z);
  return isKnown ? box : data::domain::scenegraph::tree::GetBoundingBox(*tree);
}

}  // namespace corvanta::app
