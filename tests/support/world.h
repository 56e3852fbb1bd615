#pragma once

#include "tests/support/test.h"

namespace corvanta {

using Item = Pointer<NSceneGraphItemNode>;
using Group = Pointer<NSceneGraphGroupNode>;
using Model = Pointer<NSceneGraphModelNode>;
using Reference = Pointer<NSceneGraphReferenceNode>;
using Camera = Pointer<NSceneGraphCameraNode>;
using Tree = Pointer<NSceneGraphTreeNode>;

namespace support {

/// Writes down the name of every signal, those of attributes if it is told so; `react` runs after
/// that.
class EventLog final : public NForwardingListener {
 public:
  explicit EventLog(bool withAttributes = false) : m_withAttributes(withAttributes) {}

  std::vector<std::string> names;
  std::function<void(NSignal const&)> react;

  std::vector<std::string> Take() { return std::exchange(names, {}); }

 private:
  void OnSignal(NSignal const& signal) override {
    if (signal.attribute && !m_withAttributes) return;
    names.emplace_back(signal.name);
    if (auto const call = react) call(signal);  // a copy, which may replace itself
  }

  bool const m_withAttributes;
};

/// Writes down every attribute change; `react` runs after that.
class AttributeLog final : public data::events::attribute_change::NListener {
 public:
  using Writes = std::vector<std::pair<std::wstring, double>>;

  Writes writes;
  std::function<void(NAttribute const&)> react;

  Writes Take() { return std::exchange(writes, {}); }
  std::vector<std::wstring> TakeNames() {
    std::vector<std::wstring> names;
    for (auto const& [name, value] : Take()) names.push_back(name);
    return names;
  }

 private:
  void OnAttributeChangeImpl(NAttributeHost&, NAttribute const& attribute) override {
    writes.emplace_back(attribute.GetName(), attribute.GetDouble());
    if (auto const call = react) call(attribute);  // a copy, which may replace itself
  }
};

/// A surface of one triangle from corner to corner of a box.
inline Pointer<NPolygonSurface> MakeTriangle(Vec3 const& min, Vec3 const& max) {
  auto made = New<NPolygonSurface>();
  std::vector<float> const coords{min.x, min.y, min.z, max.x, max.y, max.z, min.x, max.y, min.z};
  made->Assign(coords, coords, std::vector<unsigned>{0, 1, 2}, {});
  return made;
}

/// A document, its parts at hand.
struct World {
  NDocument document;
  NDomainManager& manager = document.GetManager();
  Pointer<NEventMultiplexer> events{&document.GetEvents()};
  data::events::attribute_change::NMultiplexer* attributes =
      &events->GetAttributeChangeEventMultiplexer();
  Pointer<NSceneGraphItemDomain> items{&document.GetItems()};
  Pointer<NSceneGraphTreeDomain> trees{&document.GetTrees()};
  Pointer<NLightDomain> lights{&document.GetLights()};
  Pointer<NCameraDomain> cameras{&document.GetCameras()};
  Pointer<NMaterialDomain> materials{&document.GetMaterials()};
  Pointer<NTextureDomain> textures{&document.GetTextures()};
  Pointer<NImageDomain> images{&document.GetImages()};
  Pointer<NGeometryDomain> geometries{&document.GetGeometries()};
  Pointer<NSceneDomain> scenes{&document.GetScenes()};
  Pointer<NProjectionDomain> projections{&document.GetProjections()};
  Pointer<NEnvironmentDomain> environments{&document.GetEnvironments()};
  Pointer<NLightEnvDomain> lightEnvs{&document.GetLightEnvs()};
  Pointer<NAnimationDomain> animations{&document.GetAnimations()};

  template <class T = NSceneGraphGroupNode>
  Pointer<T> Make() const {
    return items->CreateNode<T>();
  }
  Tree MakeTree(Item const& root = nullptr) const {
    Tree made = trees->CreateNode();
    if (root) made->SetRoot(root);
    return made;
  }
  Reference MakeReference(Tree const& shown) const {
    auto made = Make<NSceneGraphReferenceNode>();
    made->SetSceneGraph(shown);
    return made;
  }
  Model MakeModel(Vec3 const& min = {0, 0, 0}, Vec3 const& max = {1, 1, 1}) const {
    auto geometry = geometries->CreateNode();
    geometry->AddSurface(*MakeTriangle(min, max));
    auto model = Make<NSceneGraphModelNode>();
    model->SetGeometryNode(geometry);
    return model;
  }
  /// Records the events from now on.
  Pointer<EventLog> Listen(bool withAttributes = false) const {
    auto log = New<EventLog>(withAttributes);
    events->AddObserver(*log);
    return log;
  }
  Pointer<AttributeLog> ListenToAttributes() const {
    auto log = New<AttributeLog>();
    attributes->AddObserver(*log);
    return log;
  }
};

class WorldTest : public testing::Test, protected World {};

inline bool Near(Vec3 const& a, Vec3 const& b, float tolerance = 1e-5f) {
  return (a - b).Length() <= tolerance * (1 + b.Length());
}

inline Vec3 Apply(Matrix const& m, Vec3 const& point) {
  Vec3 out;
  m.MultVecMatrix(point, out);
  return out;
}

inline void Move(NSceneGraphItemNode& moved, double x, double y, double z) {
  moved.SetTranslationX(x);
  moved.SetTranslationY(y);
  moved.SetTranslationZ(z);
}

}  // namespace support

using support::Apply;
using support::Move;
using support::Near;
using support::World;
using support::WorldTest;

}  // namespace corvanta
