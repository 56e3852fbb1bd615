#include "tests/history/dump.h"

#include <bit>
#include <sstream>

namespace corvanta::history {

namespace {

using namespace data::domain;
using core::node::NNodeReference;

class Dumper final : public NNodeWatcher {
 public:
  virtual ~Dumper() = default;

  void DumpNode(data::domain::NNode const& node) {
    m_out << Id(node) << ' ' << core::text::ToNarrow(node.GetName()) << " in "
          << core::text::ToNarrow(node.GetDomain()->GetName()) << '\n';
    DumpAttributes(node);
    node.Accept(*this);
  }
  std::string Take() { return m_out.str(); }

 private:
  static std::string Id(core::node::NNode const& node) {
    return core::text::ToNarrow(node.GetID().ToString());
  }
  static std::string Value(NVariant const& value) {
    switch (value.GetKind()) {
      case core::variant::NVK_DOUBLE:
        return std::isnan(value.GetDouble())
                   ? "nan"
                   : "d" + std::to_string(std::bit_cast<std::uint64_t>(value.GetDouble()));
      case core::variant::NVK_LONG:
        return "l" + std::to_string(value.GetLong());
      case core::variant::NVK_BOOL:
        return value.GetBool() ? "true" : "false";
      case core::variant::NVK_STRING:
        return '"' + core::text::ToNarrow(value.GetString()) + '"';
      default:
        return "none";
    }
  }
  void DumpAttributes(NAttributeHost const& host) {
    for (auto i = host.GetAttributeBegin(); i != host.GetAttributeEnd(); ++i) {
      m_out << "  " << core::text::ToNarrow(i->GetName()) << ' ' << Value(i->GetValue()) << '\n';
    }
  }
  template <class T>
  void Refer(char const* name, NNodeReference<T> const& reference) {
    auto const node = reference.Get();
    m_out << "  -> " << name << ' '
          << (node ? Id(*node) : core::text::ToNarrow(GetText(reference.GetState()))) << '\n';
  }
  void DumpMap(data::environment_map::NEnvironmentMap const& map) {
    m_out << "  map " << map.GetImageType() << '\n';
    Refer("map", map.GetImageRef());
  }
  static std::string Locator(NLocator const& locator) {
    return core::text::ToNarrow(locator.GetUri().GetPath().ToString() + L"|" +
                                locator.GetZippedPath().ToString());
  }
  void DumpItem(NSceneGraphItemNode const& item) {
    m_out << "  parent " << (item.GetParent() ? Id(*item.GetParent()) : "none") << '\n';
    for (auto const& child : item.GetChildren()) m_out << "  child " << Id(*child) << '\n';
    // What is cached must be what the attributes say.
    Matrix const made = item::CalcTransformMatrix(
        VX_Math::Narrow(item.GetScaleX(), item.GetScaleY(), item.GetScaleZ()),
        VX_Math::Narrow(item.GetRotationPivotX(), item.GetRotationPivotY(),
                        item.GetRotationPivotZ()),
        VX_Math::Narrow(item.GetRotationX(), item.GetRotationY(), item.GetRotationZ()),
        VX_Math::Narrow(item.GetTranslationX(), item.GetTranslationY(), item.GetTranslationZ()));
    if (std::memcmp(&made, &item.GetTransform(), sizeof made) != 0) m_out << "  stale matrix\n";
  }

  void VisitImpl(NAnimationNode const& node) override {
    for (auto const& [context, curve] : node.GetAnimations()) {
      m_out << "  curve " << core::text::ToNarrow(context.attributeName) << ' ' << curve.get()
            << '\n';
    }
  }
  void VisitImpl(NCameraNode const&) override {}
  void VisitImpl(NEnvironmentNode const& node) override {
    Refer("tree", node.GetSceneGraphRef());
    for (auto const& path : node.GetLights()) Refer("light", path.GetItemRef());
    for (auto const& lightEnv : node.GetLightEnvs()) Refer("lightEnv", lightEnv);
    Refer("backdrop", node.Get2DImageRef());
    Refer("model", node.GetEnvironmentMapModelRef());
    Refer("floor geometry", node.GetFloorGeometryRef());
    Refer("floor image", node.GetFloorImageRef());
    DumpMap(node.GetEnvironmentMap());
  }
  void VisitImpl(NGeometryNode const& node) override {
    for (auto const& surface : node.GetSurfaces()) {
      m_out << "  surface " << surface.get() << ' ' << surface->GetCoords().size();
      for (XYZ const& point : surface->GetCoords()) m_out << ' ' << point.x << ' ' << point.y;
      m_out << " indices " << surface->GetIndices().size() << '\n';
    }
  }
  void VisitImpl(NImageNode const& node) override {
    m_out << "  locator " << Locator(node.GetImageLocator()) << '\n';
  }
  void VisitImpl(NLightNode const&) override {}
  void VisitImpl(NLightEnvNode const& node) override {
    for (auto const& lamp : node.GetLamps()) {
      m_out << "  lamp " << lamp.get() << ' ' << core::text::ToNarrow(lamp->GetName()) << ' '
            << (lamp->GetOwner() == &node) << ' '
            << (node.QueryNamedObject(lamp->GetName()) == lamp.get()) << '\n';
      DumpAttributes(*lamp);
    }
  }
  void VisitImpl(NMaterialNode const& node) override {
    for (auto const& [texture, mapping] : node.GetTextures()) {
      Refer("texture", texture);
      m_out << "  mapping " << mapping.get() << '\n';
    }
    m_out << "  brdf " << Locator(node.GetBrdfTextureLocator()) << '\n';
    DumpMap(node.GetEnvironmentMap());
  }
  void VisitImpl(NMovieNode const&) override {}
  void VisitImpl(NProjectionNode const&) override {}
  void VisitImpl(NSceneNode const& node) override {
    Refer("tree", node.GetSceneGraphRef());
    Refer("environment", node.GetEnvironmentRef());
  }
  void VisitImpl(NSceneGraphTreeNode const& node) override { Refer("root", node.GetRootRef()); }
  void VisitImpl(NSoundNode const&) override {}
  void VisitImpl(NTextureNode const& node) override { Refer("image", node.GetImageRef()); }
  void VisitImpl(NSceneGraphCameraNode const& node) override {
    DumpItem(node);
    Refer("camera", node.GetCameraRef());
  }
  void VisitImpl(NSceneGraphGroupNode const& node) override { DumpItem(node); }
  void VisitImpl(NSceneGraphLightNode const& node) override {
    DumpItem(node);
    Refer("light", node.GetLightRef());
  }
  void VisitImpl(NSceneGraphModelNode const& node) override {
    DumpItem(node);
    Refer("geometry", node.GetGeometryRef());
    Refer("material", node.GetMaterialRef());
  }
  void VisitImpl(NSceneGraphReferenceNode const& node) override {
    DumpItem(node);
    Refer("tree", node.GetSceneGraphRef());
  }

  std::ostringstream m_out;
};

}  // namespace

std::string Dump(NDocument const& document) {
  Dumper dumper;
  for (auto const& domain : document) {
    for (auto node = domain->GetNodeBegin(); node != domain->GetNodeEnd(); ++node) {
      dumper.DumpNode(dynamic_cast<data::domain::NNode const&>(*node));
    }
  }
  return dumper.Take();
}

}  // namespace corvanta::history
