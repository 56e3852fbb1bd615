#include "corvanta/renderer/NPreview.h"

#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

class PreviewTest : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    AddBall(*m_root, 0, 0, 0, 3);
    m_preview = std::make_unique<renderer::NPreview>(*m_context, document, *m_view, 80, 60);
  }

  /// The columns in which a model is seen: the first, and the one behind the last.
  static std::array<std::size_t, 2> GetColumns(std::vector<std::uint32_t> const& numbers) {
    std::array<std::size_t, 2> columns{80, 0};
    for (std::size_t i = 0; i != numbers.size(); ++i) {
      if (numbers[i] == 0) continue;
      columns[0] = std::min(columns[0], i % 80);
      columns[1] = std::max(columns[1], i % 80 + 1);
    }
    return columns;
  }

  Pointer<NView> const m_view = New<NView>();
  std::unique_ptr<renderer::NPreview> m_preview;
};

TEST_F(PreviewTest, NeedsASceneAndACamera) {
  EXPECT_THROW(m_preview->Update(), renderer::NRenderError);
  EXPECT_THROW(m_preview->TakePicture(), renderer::NRenderError);
  m_view->SetScene(*m_scene);
  EXPECT_NO_THROW(m_preview->Update());
  EXPECT_THROW(m_preview->TakePicture(), renderer::NRenderError);
  m_view->SetCamera(GetCamera());
  EXPECT_EQ(m_preview->TakePicture().GetWidth(), 80u);
  m_scene.reset();
  scenes->RemoveNode(*m_view->GetScene());
  EXPECT_THROW(m_preview->TakePicture(), renderer::NRenderError);
}

TEST_F(PreviewTest, DrawsInTheRectangleOfTheViewAndInItsHalvesForTwoEyes) {
  m_view->SetScene(*m_scene);
  m_view->SetCamera(GetCamera());
  EXPECT_EQ(m_preview->GetAspect(renderer::NSS_BOTH), 80.0 / 60);
  auto const [left, right] = GetColumns(m_preview->TakeNumbers());
  EXPECT_NEAR(static_cast<double>(left + right), 80, 1);
  m_view->SetLeft(0.5);
  EXPECT_EQ(m_preview->GetAspect(renderer::NSS_BOTH), 40.0 / 60);
  auto const half = GetColumns(m_preview->TakeNumbers());
  EXPECT_NEAR(static_cast<double>(half[0] + half[1]), 120, 1);
  m_preview = std::make_unique<renderer::NPreview>(*m_context, document, *m_view, 80, 60,
                                                   renderer::NSM_SIDE_BY_SIDE);
  auto const both = GetColumns(m_preview->TakeNumbers());
  EXPECT_GE(both[0], 40u);
  EXPECT_LT(both[0], 60u);
  EXPECT_GT(both[1], 60u);
}

}  // namespace
}  // namespace corvanta::render_tests
