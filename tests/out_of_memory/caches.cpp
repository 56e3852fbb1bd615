#include "tests/out_of_memory/world.h"

namespace corvanta::out_of_memory {

namespace {

template <class Node, class Call>
void ForEach(World& world, Call const& call) {
  for (auto const& nodes : world.document) {
    for (auto i = nodes->GetNodeBegin(); i != nodes->GetNodeEnd(); ++i) {
      if (auto* const node = dynamic_cast<Node*>(&*i)) call(*node);
    }
  }
}

std::size_t CountHits(item::NSceneGraphItemNode const& item, float x) {
  VX_Math::Line line;
  line.SetValue(Vec3(x, 0.2f, 10), Vec3(x, 0.2f, 0));
  std::vector<item::NSceneGraphModelNode const*> models;
  data::operators::ray_picker::PickModel(item, &line, models);
  return models.size();
}

class Bytes {
 public:
  std::string text;

  template <class T>
  Bytes& operator<<(T const& value) {
    text.append(reinterpret_cast<char const*>(&value), sizeof value);
    return *this;
  }
};

}  // namespace

Caches ReadCaches(World& world) {
  Bytes boxes, others;
  using Tree = domain::scenegraph::tree::NSceneGraphTreeNode;
  ForEach<Tree>(world, [&](Tree const& tree) {
    others << tree.GetControlTransform();
    boxes << GetBoundingBox(tree);
  });
  using Reference = item::NSceneGraphReferenceNode;
  ForEach<item::NSceneGraphItemNode>(world, [&](item::NSceneGraphItemNode const& node) {
    others << node.GetTransform();
    boxes << node.GetBoundingBox({}, {});
    for (float const x : {0.2f, 0.9f}) boxes << CountHits(node, x);
    ForEach<Reference>(world, [&](Reference const& reference) {
      auto const shown = reference.GetSceneGraph();
      EXPECT_EQ(node.IsReferredFrom(reference), shown && shown->GetRoot() == &node);
    });
  });
  ForEach<item::NSceneGraphModelNode>(world, [&](item::NSceneGraphModelNode const& model) {
    others << model.GetBoundingBoxWithoutChildren();
  });
  ForEach<domain::material::NMaterialNode>(world, [&](domain::material::NMaterialNode const& used) {
    bool isUsed = false;
    ForEach<item::NSceneGraphModelNode>(world, [&](item::NSceneGraphModelNode const& model) {
      isUsed = isUsed || model.GetMaterialNode() == &used;
    });
    EXPECT_EQ(IsUsed(used), isUsed);
  });
  others << world.projection->GetTransform();
  return {boxes.text, others.text};
}

void MarkCaches(World& world) {
  ForEach<item::NSceneGraphItemNode>(
      world, [](item::NSceneGraphItemNode& node) { node.SetScaleX(node.GetScaleX()); });
  using Tree = domain::scenegraph::tree::NSceneGraphTreeNode;
  ForEach<Tree>(world, [](Tree& tree) { tree.SetUnit(tree.GetUnit()); });
  ForEach<domain::geometry::NGeometryNode>(world, [](domain::geometry::NGeometryNode& node) {
    auto const surfaces = node.GetSurfaces();
    for (auto const& surface : surfaces) node.RemoveSurface(*surface);
    for (auto const& surface : surfaces) node.AddSurface(*surface);
  });
  world.projection->SetScaleX(world.projection->GetScaleX());
}

void MakePickIndexes(World& world) {
  std::vector<float> coords, normals;
  std::vector<unsigned> indices;
  for (unsigned i = 0; i != 300; ++i) {
    float const x = static_cast<float>(i) / 300;
    coords.insert(coords.end(), {x, 0, 0, x + 0.01f, 0, 0, x, 1, 0});
    indices.insert(indices.end(), {3 * i, 3 * i + 1, 3 * i + 2});
  }
  world.surface->Assign(coords, coords, indices, {});
  for (int i = 0; i != 12; ++i) {
    for (auto const* const root : {&world.root, &world.shownRoot}) CountHits(**root, 0.9f);
  }
}

}  // namespace corvanta::out_of_memory
