#include "tests/mapping/world.h"

namespace corvanta::mapping {
namespace {

using namespace data::domain::projection;

/// Hears a projection's attributes and its method, in one list.
class Recorder final : public NProjectionChangeListener,
                       public data::events::attribute_change::NListener {
 public:
  std::vector<std::wstring> heard;
  std::function<void()> react;

 private:
  void OnProjectionChangeImpl(NProjectionNode const& projection) override {
    heard.push_back(L"now " + projection.GetProjectionMethod());
  }
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const& attribute) override {
    heard.push_back(attribute.GetName());
    if (react) react();
  }
};

TEST(ProjectionNode, TellsOfItsMethodAfterTheAttribute) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  Pointer<Recorder> const recorder(new Recorder);
  world.attributes->AddObserver(*recorder);
  node->AddObserver(*recorder);
  node->SetProjectionMethod(PM_SPHERE);
  node->SetScaleX(2);
  node->SetUVWOrder(NUVWO_VUW);
  EXPECT_THAT(recorder->heard, ElementsAre(L"method", L"now sphere", L"scale.x", L"uvwOrder"));
}

TEST(ProjectionNode, ScalesThenTurnsThenMoves) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  EXPECT_EQ(node->GetTransform(), Matrix());
  node->SetScaleX(2);
  node->SetRotationZ(90);
  node->SetTranslationX(10);
  Vec3 out;
  node->GetTransform().MultVecMatrix({1, 0, 0}, out);
  EXPECT_NEAR(out.x, 10, 1e-5);
  EXPECT_NEAR(out.y, 2, 1e-5);

  // The value from before is read inside the event, and the new one after it, thrown or not.
  Pointer<Recorder> const recorder(new Recorder);
  world.attributes->AddObserver(*recorder);
  recorder->react = [&] {
    EXPECT_EQ(node->GetTransform()(3, 1), 0.0f);
    throw 1;
  };
  EXPECT_THROW(node->SetTranslationY(5), int);
  EXPECT_EQ(node->GetTransform()(3, 1), 5.0f);
  // What isn't among the nine, and a silent write, leave the cache alone.
  recorder->react = nullptr;
  node->QueryAttribute(AN_TRANSLATION_Z)->SetValue(7.0, false);
  node->QueryAttribute(AN_FLIP_U)->SetValue(true, true);
  EXPECT_EQ(node->GetTransform()(3, 2), 0.0f);
  for (wchar_t const* const name :
       {AN_TRANSLATION_X, AN_TRANSLATION_Y, AN_TRANSLATION_Z, AN_ROTATION_X, AN_ROTATION_Y,
        AN_ROTATION_Z, AN_SCALE_X, AN_SCALE_Y, AN_SCALE_Z}) {
    Matrix const before = node->GetTransform();
    core::attribute::NAttribute& attribute = *node->QueryAttribute(name);
    attribute.SetValue(attribute.GetDouble() + 1.5, true);
    EXPECT_FALSE(node->GetTransform() == before) << testing::PrintToString(name);
  }
}

TEST(ProjectionNode, ATargetKeepsTheFrameOfItsFirstUse) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  Model const model = world.MakeModel();
  Path const path = world.MakePath(model);
  EXPECT_THROW(node->GetModelToProjectionTransform(path), NProjectionNodeError);
  EXPECT_TRUE(node->GetTargets().empty());

  model->SetTranslationX(3);
  EXPECT_TRUE(node->AddModel(path));
  EXPECT_FALSE(node->GetTargets().begin()->second);
  EXPECT_EQ(node->GetModelToProjectionTransform(path)(3, 0), 3.0f);
  EXPECT_EQ(GetGlobalTransform(*node, path), Matrix());
  EXPECT_FALSE(node->AddModel(path));
  EXPECT_FALSE(node->AddModelForDeserialization(path, Matrix()));
  model->SetTranslationX(5);
  EXPECT_EQ(node->GetModelToProjectionTransform(path)(3, 0), 3.0f);
  EXPECT_EQ(GetGlobalTransform(*node, path)(3, 0), 2.0f);

  EXPECT_TRUE(node->RemoveModel(path));
  EXPECT_FALSE(node->RemoveModel(path));
  EXPECT_FALSE(node->Targets(path));
  Matrix saved;
  saved(3, 0) = 8;
  EXPECT_TRUE(node->AddModelForDeserialization(path, saved));
  EXPECT_EQ(node->GetModelToProjectionTransform(path), saved);

  Path const gone = world.MakePath();  // nobody holds its model but the domain
  node->AddModel(gone);
  world.items->RemoveNode(const_cast<NSceneGraphModelNode&>(*gone.GetNode()));
  EXPECT_THROW(node->GetModelToProjectionTransform(gone),
               data::domain::scenegraph::NSceneGraphPathError);
  EXPECT_FALSE(node->GetTargets().at(gone));
}

TEST(ProjectionNode, AReplacedTargetHandsOnItsFrame) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  Path const first = world.MakePath();
  Path const second = world.MakePath();
  Path const third = world.MakePath();
  Matrix frame;
  frame(3, 1) = 4;
  node->AddModelForDeserialization(first, frame);
  node->ReplaceModel(first, second);
  EXPECT_FALSE(node->Targets(first));
  EXPECT_TRUE(node->GetTargets().at(second) == frame);
  node->ReplaceModel(first, third);  // no target any more
  EXPECT_FALSE(node->Targets(third));
  node->AddModel(third);
  node->ReplaceModel(node->GetTargets().find(second)->first, third);
  EXPECT_EQ(node->GetTargets().size(), 1u);
  EXPECT_FALSE(node->GetTargets().at(third)) << "its own empty frame stays";
  node->ReplaceModel(third, first);
  EXPECT_FALSE(node->GetTargets().at(first));
  node->ReplaceModel(first, first);
  EXPECT_TRUE(node->Targets(first));
}

// Flip, order and factors are compared with the oracle's where meshes are mapped.
TEST(ProjectionNode, ARepeatOf0ShiftsWhatTheOutputHeld) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  auto const convert = [&](float scale) {
    std::array<float, 3> out{10, 20, 30};
    node->ConvertTextureCoord(0.25f, 0.5f, 0.75f, out[0], out[1], out[2], scale);
    return out;
  };
  node->SetUVWOrder(SwapVW(NUVWO_UVW));  // no order that is acted on
  node->SetRepeatU(0);
  node->SetOffsetU(1);
  EXPECT_THAT(convert(2), ElementsAre(11, 1, 1.5f));
  EXPECT_THAT(convert(0), ElementsAre(11, 20, 30));
}

TEST(UVWOrder, SwapsTwoFields) {
  EXPECT_EQ(SwapUV(NUVWO_UVW), NUVWO_VUW);
  EXPECT_EQ(SwapVW(NUVWO_UVW), 33);
  EXPECT_EQ(SwapWU(NUVWO_UVW), 6);
  for (long order = 0; order != 128; ++order) {
    auto const value = static_cast<NUVWOrder>(order);
    EXPECT_EQ(SwapUV(SwapUV(value)), value);
    EXPECT_EQ(SwapWU(value), SwapUV(SwapVW(SwapUV(value))));
  }
}

}  // namespace
}  // namespace corvanta::mapping
