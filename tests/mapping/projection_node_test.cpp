#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "corvanta/data/domain/projection/NProjectionNodeError.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPathError.h"
#include "corvanta/data/events/attribute_change/NListener.h"
#include "tests/mapping/world.h"

namespace corvanta::mapping {
namespace {

using namespace data::domain::projection;
using testing::ElementsAre;
using VX_Math::Matrix;
using VX_Math::Vec3;

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
  boost::intrusive_ptr<Recorder> const recorder(new Recorder);
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
  boost::intrusive_ptr<Recorder> const recorder(new Recorder);
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
}

TEST(ProjectionNode, ATargetThatHasGoneTakesNoFrame) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  Model model = world.MakeModel();
  Path const path = world.MakePath(model);
  node->AddModel(path);
  world.items->RemoveNode(*model);
  model.reset();
  EXPECT_THROW(node->GetModelToProjectionTransform(path),
               data::domain::scenegraph::NSceneGraphPathError);
  EXPECT_FALSE(node->GetTargets().begin()->second);
  EXPECT_STREQ(NProjectionNodeError().GetErrorCode(), L"Projection Node Error");
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

void Flip(NProjectionNode& node, wchar_t const* name) {
  node.QueryAttribute(name)->SetValue(true, true);
}

TEST(ProjectionNode, FlipsOrdersRepeatsAndShiftsCoordinates) {
  World world;
  // Of (0.25, 0.5, 0.75), into outputs that hold (10, 20, 30).
  auto const convert = [](NProjectionNode const& node, float scale) {
    std::array<float, 3> out{10, 20, 30};
    node.ConvertTextureCoord(0.25f, 0.5f, 0.75f, out[0], out[1], out[2], scale);
    return out;
  };
  Projection const plain = world.MakeProjection(L"plane");
  EXPECT_THAT(convert(*plain, 1), ElementsAre(0.25f, 0.5f, 0.75f));
  plain->SetUVWOrder(SwapVW(NUVWO_UVW));
  EXPECT_THAT(convert(*plain, 1), ElementsAre(0.25f, 0.5f, 0.75f)) << "an order that isn't known";
  plain->SetOffsetW(1);
  EXPECT_THAT(convert(*plain, 0), ElementsAre(10, 20, 31)) << "by a scale of 0";
  plain->SetRepeatU(0);
  plain->SetOffsetU(1);
  EXPECT_THAT(convert(*plain, 1), ElementsAre(11, 0.5f, 1.75f)) << "what stood there is shifted";

  Projection const node = world.MakeProjection(L"plane");
  Flip(*node, AN_FLIP_U);
  Flip(*node, AN_FLIP_W);
  node->SetUVWOrder(NUVWO_VUW);
  EXPECT_THAT(convert(*node, 1), ElementsAre(0.5f, 0.75f, 0.25f));
  node->SetRepeatU(4);
  node->SetOffsetV(0.5);
  node->SetRepeatW(-1);
  EXPECT_THAT(convert(*node, 2), ElementsAre(4, 2, -0.5f)) << "in the places after the exchange";
}

TEST(ProjectionNode, ConvertsTangents) {
  World world;
  Projection const node = world.MakeProjection(L"plane");
  auto const convert = [&] {
    std::array<float, 6> f{1, 2, 3, 4, 5, 6};
    node->ConvertTangent(f[0], f[1], f[2], f[3], f[4], f[5]);
    return f;
  };
  Flip(*node, AN_FLIP_U);
  Flip(*node, AN_FLIP_W);
  EXPECT_THAT(convert(), ElementsAre(-1, -2, -3, 4, 5, 6));
  node->SetUVWOrder(NUVWO_VUW);
  EXPECT_THAT(convert(), ElementsAre(-4, -5, -6, 1, 2, 3));
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
