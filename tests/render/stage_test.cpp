#include <algorithm>
#include <set>

#include "app/scene/NStage.h"
#include "app/scene/NStagePreview.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

/// A white model as the program shows it.
class StageTest : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    m_root->RemoveChild(*m_camera);
    m_white = m_document.GetMaterials().CreateNode(NNodeID());
    for (char const* const share : {"diffuse", "ambient"}) {
      for (char const* const channel : {".r", ".g", ".b"}) {
        std::string const name = std::string(share) + channel;
        m_white->QueryAttribute(std::wstring(name.begin(), name.end()))->SetValue(1.0, true);
      }
    }
  }

  /// The greys of the pixels where a model is seen.
  std::vector<int> GetGreys(app::NStage& stage) {
    app::NStagePreview preview(m_document, stage, kWidth, kHeight);
    auto const picture = preview.TakePicture();
    auto const numbers = preview.TakeNumbers();
    std::vector<int> greys;
    for (std::size_t i = 0; i != numbers.size(); ++i) {
      if (numbers[i] != 0) greys.push_back(picture.GetRow(0)[3 * i]);
    }
    return greys;
  }

  std::vector<int> GetGreys(app::NStageLights lights) {
    app::NStage stage(m_document, m_tree, lights);
    return GetGreys(stage);
  }

  boost::intrusive_ptr<data::domain::material::NMaterialNode> m_white;
};

int GetMedian(std::vector<int> greys) {
  std::sort(greys.begin(), greys.end());
  return greys.empty() ? -1 : greys[greys.size() / 2];
}

TEST_F(StageTest, AWhiteBallKeepsItsShapeUnderTheDefaultLights) {
  AddBall(*m_root, 0, 0, 0)->SetMaterial(m_white);
  auto const greys = GetGreys(app::NSL_AUTOMATIC);
  EXPECT_LT(*std::max_element(greys.begin(), greys.end()), 225);
  EXPECT_GT(*std::max_element(greys.begin(), greys.end()), 205);
  EXPECT_GE(std::set<int>(greys.begin(), greys.end()).size(), 40u);
}

TEST_F(StageTest, AFillShinesWhereTheFileLeavesMostInTheDark) {
  AddBall(*m_root, 0, 0, 0)->SetMaterial(m_white);
  auto const light = Add<item::NSceneGraphLightNode>(m_root.get());
  light->SetLightNode(m_document.GetLights().CreateNode(NNodeID()));
  // It shines along its -z axis, from behind towards the camera, which looks down from the front.
  light->SetRotationY(180);
  light->SetRotationX(-20);
  int const file = GetMedian(GetGreys(app::NSL_FILE));
  int const automatic = GetMedian(GetGreys(app::NSL_AUTOMATIC));
  int const both = GetMedian(GetGreys(app::NSL_BOTH));
  EXPECT_LT(file, 100);
  EXPECT_GT(automatic, file + 30);
  EXPECT_GT(both, automatic + 20);
  // From the front it needs none.
  light->SetRotationY(0);
  EXPECT_EQ(GetGreys(app::NSL_AUTOMATIC), GetGreys(app::NSL_FILE));
  EXPECT_NE(GetGreys(app::NSL_DEFAULT), GetGreys(app::NSL_FILE));
}

TEST_F(StageTest, TheFloorIsUnderTheModelAndItsShadowIsSeen) {
  // Turned about two axes, the ball reaches less far down than its box.
  auto const ball = AddBall(*m_root, 0, 0, 0);
  ball->SetMaterial(m_white);
  ball->SetRotationX(40);
  ball->SetRotationZ(40);
  app::NStage stage(m_document, m_tree);
  float lowest = 0;
  for (auto const& v : (*m_ball->GetSurfaces().begin())->GetCoords()) {
    VX_Math::Vec3 at(v.x, v.y, v.z);
    ball->GetTransform().MultVecMatrix(at, at);
    lowest = std::min(lowest, at.y);
  }
  EXPECT_NEAR(stage.GetEnvironment().GetFloorHeight(), static_cast<double>(lowest), 1e-6);
  auto& environment = stage.GetEnvironment();
  environment.SetFloorIsVisibleFlag(true);
  app::NStagePreview preview(m_document, stage, kWidth, kHeight);
  auto const shadowed = preview.TakePicture();
  environment.SetFloorShowsShadowFlag(false);
  auto const lit = preview.TakePicture();
  auto const numbers = preview.TakeNumbers();
  // Around the model, at most a fifth of the picture away.
  int darker = 0, around = 0;
  for (unsigned y = 0; y != kHeight; ++y) {
    for (unsigned x = kHeight / 5; x != kWidth - kHeight / 5; ++x) {
      auto const* const row = &numbers[std::size_t{y} * kWidth];
      if (row[x] != 0) continue;
      bool const isNear = row[x - kHeight / 5] != 0 || row[x + kHeight / 5] != 0;
      if (!isNear || y < kHeight * 2 / 3) continue;
      ++around;
      darker += shadowed.GetRow(y)[3 * x] < lit.GetRow(y)[3 * x] - 5;
    }
  }
  EXPECT_GT(darker, around / 5) << around;
}

TEST_F(StageTest, TheModelFillsThePictureFromAllAround) {
  // Boxes of turned items are larger than what they hold.
  Group const group = AddGroup(*m_root);
  group->SetRotationX(35);
  group->SetRotationZ(50);
  AddBall(*group, 0, 0, 0, 2);
  AddBall(*group, 5, 1, 0, 0.5);
  app::NStage stage(m_document, m_tree);
  for (auto const& [width, height] : {std::pair(160u, 120u), std::pair(60u, 150u)}) {
    app::NStagePreview preview(m_document, stage, width, height);
    for (int turn = 0; turn != 5; ++turn) {
      auto const numbers = preview.TakeNumbers();
      unsigned left = width, right = 0, top = height, bottom = 0;
      for (unsigned i = 0; i != numbers.size(); ++i) {
        if (numbers[i] == 0) continue;
        left = std::min(left, i % width);
        right = std::max(right, i % width + 1);
        top = std::min(top, i / width);
        bottom = std::max(bottom, i / width + 1);
      }
      EXPECT_GT(left, 0u);
      EXPECT_LT(right, width);
      EXPECT_GT(top, 0u);
      EXPECT_LT(bottom, height);
      EXPECT_NEAR(left, width - right, 3);
      EXPECT_NEAR(top, height - bottom, 3);
      EXPECT_GT(std::max(double(right - left) / width, double(bottom - top) / height), 0.88);
      stage.GetOverview().Orbit(72);
    }
  }
}

TEST_F(StageTest, BackgroundsWiresAndEdgesAreDrawn) {
  auto const root = Add<item::NSceneGraphGroupNode>(nullptr);
  AddBall(*root, 0, 0, 0)->SetMaterial(m_white);
  // Also below a reference.
  Show(CreateTree(*root), *m_root);
  app::NStage stage(m_document, m_tree);
  app::NStagePreview preview(m_document, stage, kWidth, kHeight);
  stage.SetBackground(VX_Math::Vec3(1.0f, 0.0f, 0.0f));
  auto const corner = [&preview] {
    auto const picture = preview.TakePicture();
    return std::array<int, 3>{picture.GetRow(0)[0], picture.GetRow(0)[1], picture.GetRow(0)[2]};
  };
  EXPECT_EQ(corner(), (std::array<int, 3>{255, 0, 0}));
  // Of the pixels in the middle third, those that show the background, and dark ones.
  auto const count = [&preview] {
    auto const picture = preview.TakePicture();
    std::array<int, 2> counts{};
    for (unsigned y = kHeight / 3; y != kHeight * 2 / 3; ++y) {
      for (unsigned x = kWidth / 3; x != kWidth * 2 / 3; ++x) {
        unsigned char const* const pixel = picture.GetRow(y) + 3 * x;
        counts[0] += pixel[1] < 60 && pixel[0] > 200;
        counts[1] += pixel[0] < 170;
      }
    }
    return counts;
  };
  EXPECT_EQ(count(), (std::array<int, 2>{0, 0}));
  preview.SetShowsEdgesFlag(true);
  EXPECT_GT(count()[1], 100);
  EXPECT_EQ(count()[0], 0);
  preview.SetShowsEdgesFlag(false);
  stage.SetWired();
  EXPECT_GT(count()[0], 500);
}

}  // namespace
}  // namespace corvanta::render_tests
