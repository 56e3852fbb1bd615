#include "app/scene/walk.h"

#include <list>
#include <vector>

namespace corvanta::app {

namespace {

using data::domain::scenegraph::item::NSceneGraphItemNode;
using Children = std::list<boost::intrusive_ptr<NSceneGraphItemNode>>;

// An item whose children are being walked.
struct Level {
  boost::intrusive_ptr<NSceneGraphItemNode> item;
  VX_Math::Matrix global;
  Children::const_iterator next;
};

class Walk {
 public:
  Walk(VX_Math::Matrix const& control, std::function<void(NVisit const&)> const& visit)
      : m_control(control), m_visit(visit) {}

  void Run(NSceneGraphItemNode& root) {
    Enter(root, m_control);
    while (!m_levels.empty()) {
      Level& level = m_levels.back();
      if (level.next == level.item->GetChildren().end()) {
        m_levels.pop_back();
      } else {
        NSceneGraphItemNode& child = **level.next++;
        Enter(child, child.TransformIsAbsolute() ? m_control : VX_Math::Matrix(level.global));
      }
    }
  }

 private:
  void Enter(NSceneGraphItemNode& item, VX_Math::Matrix const& above) {
    VX_Math::Matrix const global = item.GetTransform() * above;
    VX_Math::Box3 box = item.GetBoundingBox(global, m_control);
    box.Transform(global);
    auto const* const parent = m_levels.empty() ? nullptr : m_levels.back().item.get();
    m_visit({item, parent, m_levels.size(), global, box});
    m_levels.push_back({&item, global, item.GetChildren().begin()});
  }

  VX_Math::Matrix const m_control;
  std::function<void(NVisit const&)> const& m_visit;
  std::vector<Level> m_levels;
};

}  // namespace

void WalkTree(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
              std::function<void(NVisit const&)> const& visit) {
  auto const root = tree.GetRoot();
  if (root) Walk(tree.GetControlTransform(), visit).Run(*root);
}

}  // namespace corvanta::app
