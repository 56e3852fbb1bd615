#include <algorithm>

#include "tests/render/file_world.h"

namespace corvanta::render_tests {
namespace {

/// Lines and points are seen in the colour that the file gives them, however the lamp stands.
class LineFileTest : public FileWorld {
 protected:
  void SetUp() override {
    FileWorld::SetUp();
    if (!IsSkipped()) m_lamp->SetEnabled(false);
  }

  /// Whether something of that colour is seen within a pixel of a point of the plane z = 0.
  bool IsSeen(renderer::NPixels const& picture, float x, float y, Color const& color) const {
    float const pixel = 8.7f / kHeight;
    for (float const dx : {-pixel, 0.0f, pixel}) {
      for (float const dy : {-pixel, 0.0f, pixel}) {
        Color const seen = At(picture, x + dx, y + dy);
        bool isNear = true;
        for (std::size_t c = 0; c != 3; ++c) isNear &= std::abs(seen[c] - color[c]) < 60;
        if (isNear) return true;
      }
    }
    return false;
  }

  /// How many pixels aren't black.
  static int CountDrawn(renderer::NPixels const& picture) {
    int count = 0;
    for (unsigned i = 0; i != kWidth * kHeight; ++i) {
      auto const* const pixel = picture.GetRow(0) + 3 * i;
      count += *std::max_element(pixel, pixel + 3) > 40;
    }
    return count;
  }
};

Color const kBlack{0, 0, 0}, kRed{255, 0, 0};

TEST_F(LineFileTest, EveryModeIsDrawn) {
  json const red = {{"pbrMetallicRoughness", {{"baseColorFactor", {1, 0, 0, 1}}}}};
  Primitive square;
  square.positions = {-3, -3, 0, 3, -3, 0, 3, 3, 0, -3, 3, 0};
  square.uvs.clear();
  square.normals.clear();
  struct Row {
    int mode;
    std::array<bool, 4> sides;  // below, right, above, left
  };
  for (Row const& row : {Row{0, {false, false, false, false}}, Row{1, {true, false, true, false}},
                         Row{2, {true, true, true, true}}, Row{3, {true, true, true, false}}}) {
    for (bool const isIndexed : {false, true}) {
      square.mode = row.mode;
      square.indices = isIndexed ? std::vector<unsigned>{0, 1, 2, 3} : std::vector<unsigned>{};
      ShowGltf(red, {}, square);
      EXPECT_THAT(m_model.notes, testing::IsEmpty());
      auto const drawn = DrawPicture();
      for (auto const& [x, y] : {std::pair(-3.0f, -3.0f), std::pair(3.0f, 3.0f)}) {
        EXPECT_TRUE(IsSeen(drawn, x, y, kRed)) << row.mode;
      }
      std::array<bool, 4> const sides{IsSeen(drawn, 1, -3, kRed), IsSeen(drawn, 3, 1, kRed),
                                      IsSeen(drawn, 1, 3, kRed), IsSeen(drawn, -3, 1, kRed)};
      EXPECT_EQ(sides, row.sides) << row.mode;
      EXPECT_EQ(At(drawn, 0, 0), kBlack);
      // Picks hit faces alone, and so do the numbers of what is picked.
      auto const numbers = DrawNumbers();
      EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 0u), kWidth * kHeight);
    }
  }
  // A point is about as large as two pixels of a small picture.
  square.mode = 0;
  ShowGltf(red, {}, square);
  EXPECT_GE(CountDrawn(DrawPicture()), 4 * 4);
  EXPECT_LE(CountDrawn(DrawPicture()), 4 * 16);
}

TEST_F(LineFileTest, TheyHaveTheColoursOfTheirEnds) {
  Primitive line;
  line.positions = {-3, 0, 0, 3, 0, 0};
  line.uvs.clear();
  line.normals.clear();
  line.colors = {1, 0, 0, 1, 0, 0, 1, 1};
  line.indices.clear();
  for (int const mode : {0, 1}) {
    line.mode = mode;
    ShowGltf(json::object(), {}, line);
    auto const drawn = DrawPicture();
    EXPECT_TRUE(IsSeen(drawn, -2.95f, 0, kRed)) << mode;
    EXPECT_TRUE(IsSeen(drawn, 2.95f, 0, {0, 0, 255})) << mode;
    EXPECT_EQ(IsSeen(drawn, 0, 0, {188, 0, 188}), mode == 1);
  }
}

TEST_F(LineFileTest, OtherFormatsHaveThemToo) {
  std::string const square = "v -3 -3 0\nv 3 -3 0\nv 3 3 0\nv -3 3 0\n";
  struct Row {
    char const* name;
    std::string content;
    bool hasLines, hasFace;
  };
  std::string const ply =
      "ply\nformat ascii 1.0\nelement vertex 2\nproperty float x\nproperty float y\n"
      "property float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
      "end_header\n-3 -3 0 255 0 0\n3 3 0 0 255 0\n";
  for (Row const& row :
       {Row{"lines.obj", square + "l 1 2 3 4 1\n", true, false},
        Row{"points.obj", square + "p 1 2 3 4\n", false, false},
        Row{"vertices.obj", square, false, false}, Row{"cloud.ply", ply, false, false},
        Row{"mixed.obj", square + "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nl 1 2 3 4 1\nf 5 6 7\n", true,
            true}}) {
    m_lamp->SetEnabled(true);
    Show(row.name, row.content);
    auto const drawn = DrawPicture();
    auto const isAnything = [&](float x, float y) {
      float const pixel = 8.7f / kHeight;
      int brightest = 0;
      for (float const dx : {-pixel, 0.0f, pixel}) {
        for (float const dy : {-pixel, 0.0f, pixel}) {
          Color const seen = At(drawn, x + dx, y + dy);
          brightest = std::max(brightest, *std::max_element(seen.begin(), seen.end()));
        }
      }
      return brightest > 100;
    };
    EXPECT_TRUE(isAnything(-3, -3) && isAnything(3, 3)) << row.name;
    EXPECT_EQ(isAnything(1, 3), row.hasLines) << row.name;
    EXPECT_EQ(isAnything(0.5f, 0), row.hasFace) << row.name;
  }
}

}  // namespace
}  // namespace corvanta::render_tests
