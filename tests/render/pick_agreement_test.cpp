#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

namespace ray_picker = data::operators::ray_picker;

/// Each pixel of a picture is the model that a pick through its middle hits first.
class PickAgreementTest : public World {
 protected:
  std::uint32_t Pick(unsigned x, unsigned y, Matrix const& viewProjection) const {
    Vec2 const point((static_cast<float>(x) + 0.5f) / kWidth,
                     1 - (static_cast<float>(y) + 0.5f) / kHeight);
    std::vector<ray_picker::ModelPath> paths;
    std::vector<Vec3> points;
    if (!ray_picker::PickDetail(*m_scene, &point, &viewProjection, paths, points)) return 0;
    auto const& drawn = m_renderer->GetItems();
    NDrawItem::Path const wanted(paths.front());
    auto const found = std::find_if(drawn.begin(), drawn.end(),
                                    [&](NDrawItem const& item) { return item.path == wanted; });
    return found == drawn.end() ? 0xFFFFFFFF
                                : static_cast<std::uint32_t>(found - drawn.begin() + 1);
  }

  /// Whether the pixels around aren't all the same.
  static bool TouchesEdge(std::vector<std::uint32_t> const& numbers, unsigned x, unsigned y) {
    for (unsigned j = std::max(y, 1u) - 1; j != std::min(y + 2, kHeight); ++j) {
      for (unsigned i = std::max(x, 1u) - 1; i != std::min(x + 2, kWidth); ++i) {
        if (numbers[j * kWidth + i] != numbers[y * kWidth + x]) return true;
      }
    }
    return false;
  }

  /// `modelCount` is how many models there are to be seen.
  void Compare(std::size_t modelCount) {
    auto const drawn = DrawNumbers();
    Matrix const viewProjection = GetViewpoint().GetViewProjection();
    std::vector<std::uint32_t> picked;
    for (unsigned y = 0; y != kHeight; ++y) {
      for (unsigned x = 0; x != kWidth; ++x) picked.push_back(Pick(x, y, viewProjection));
    }
    std::size_t others = 0;
    for (unsigned i = 0; i != picked.size(); ++i) {
      if (drawn[i] == picked[i]) continue;
      unsigned const x = i % kWidth, y = i / kWidth;
      ++others;
      EXPECT_TRUE(TouchesEdge(drawn, x, y) || TouchesEdge(picked, x, y))
          << "at " << x << ' ' << y << " drawn " << drawn[i] << " picked " << picked[i];
    }
    EXPECT_LE(others, drawn.size() / 1000);
    std::set<std::uint32_t> seen(drawn.begin(), drawn.end());
    seen.erase(0);
    EXPECT_EQ(seen.size(), modelCount);
    RecordProperty("otherPixels", static_cast<int>(others));
  }
};

TEST_F(PickAgreementTest, NestedReferencesWithUnitsAndAxes) {
  auto const innerRoot = Make();
  Model const parent = AddBall(*innerRoot, 0, 0, 0, 1000);
  AddBall(*parent, 1.2, 0.2, 0.9, 0.6);
  Tree const inner = MakeTree(innerRoot);
  inner->SetUnit(0.001);
  inner->SetCoordConversion(data::domain::scenegraph::tree::CCV_ZUP_TO_YUP);
  auto const middleRoot = Make();
  Show(inner, *middleRoot)->SetTranslationX(6);
  AddBall(*Show(inner, *middleRoot), 0, 6, 0, 2);
  Tree const middle = MakeTree(middleRoot);
  middle->SetUnit(0.5);
  Show(middle, *m_root)->SetRotationZ(15);
  auto const turned = Show(middle, *m_root);
  turned->SetTranslationX(-4);
  turned->SetRotationX(60);
  AddBall(*m_root, 0.5, -2.5, 2);
  Compare(11);
}

TEST_F(PickAgreementTest, TiltedAndShiftedCamera) {
  for (int i = 0; i != 5; ++i) AddBall(*m_root, 2.1 * i - 4, 0.8 * i - 1.5, 0.9 * i - 2);
  m_lens->SetVerticalTiltAngle(6);
  m_lens->SetHorizontalTiltAngle(-4);
  m_lens->SetShiftY(0.1);
  m_lens->SetStereoShiftX(0.2);
  m_lens->SetStereoScreenDistance(10);
  Compare(5);
}

TEST_F(PickAgreementTest, OrthographicCamera) {
  for (int i = 0; i != 6; ++i) AddBall(*m_root, 1.3 * i - 3, i % 2 - 0.4, 1.7 * (i % 3));
  m_lens->SetProjectionType(data::domain::camera::NPT_ORTHOGRAPHIC);
  m_lens->SetShiftY(-0.08);
  m_camera->SetTranslationX(5);
  m_camera->SetTranslationY(4);
  Compare(6);
}

TEST_F(PickAgreementTest, HiddenItems) {
  AddBall(*m_root, -2, 0, 3)->SetIsVisibleFlag(false);
  Model const hidden = AddBall(*m_root, 0, 0, 2, 0.5);
  AddBall(*hidden, 1, 1, 0);
  hidden->SetIsVisibleFlag(false);
  Group const group = Add(*m_root);
  AddBall(*Add(*group), 2, 0, 3);
  group->SetIsVisibleFlag(false);
  AddBall(*m_root, -2, 0.5, 0);
  AddBall(*AddBall(*m_root, 1, 0.5, 0), 0.5, 0.8, 0.4);
  m_root->SetIsVisibleFlag(false);  // ignored: it is a root
  Compare(3);
}

TEST_F(PickAgreementTest, AbsoluteTransforms) {
  Group const group = Add(*m_root);
  group->SetTranslationX(-3);
  group->SetRotationZ(40);
  group->SetScaleX(-1.5);
  Model const absolute = AddBall(*group, 1, 1, 0, 1.4);
  absolute->SetTransformIsAbsoluteFlag(true);
  AddBall(*absolute, 0.9, 0.2, 0.6, 0.5);
  AddBall(*group, 0.5, -1, 1);
  auto const shownRoot = Make();
  AddBall(*shownRoot, 3, -2, 0)->SetTransformIsAbsoluteFlag(true);
  AddBall(*shownRoot, 0, 2, 0);
  Show(MakeTree(shownRoot), *group);
  Compare(5);
}

TEST_F(PickAgreementTest, FromFarAwayThroughANarrowAngle) {
  for (int i = 0; i != 8; ++i) AddBall(*m_root, 0.2 * i - 0.7, 0.1 * (i % 3), 0.02 * (i % 4));
  m_lens->SetVerticalViewAngle(0.15);
  m_camera->SetTranslationZ(1500);
  Compare(8);
}

TEST_F(PickAgreementTest, WideAngle) {
  for (int i = 0; i != 7; ++i) AddBall(*m_root, 5 * i - 15, 3 * (i % 3) - 3, -i % 4, 2);
  m_lens->SetVerticalViewAngle(110);
  m_camera->SetTranslationZ(9);
  Compare(7);
}

}  // namespace
}  // namespace corvanta::render_tests
