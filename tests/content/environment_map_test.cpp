#include "tests/support/world.h"

namespace corvanta::data::environment_map {
namespace {

class Recorder final : public NEnvironmentMapListener {
 public:
  std::vector<std::string> heard;
  std::function<void(NEnvironmentMap const&)> react;

 private:
  void OnImageChange(NEnvironmentMap const& map) override { Hear("image", map); }
  void OnImageTypeChange(NEnvironmentMap const& map) override {
    Hear("type " + std::to_string(map.GetImageType()), map);
  }
  void Hear(std::string const& text, NEnvironmentMap const& map) {
    heard.push_back(text);
    if (react) react(map);
  }
};

class Scaling final : public NEnvironmentMapTransform {
 public:
  explicit Scaling(float const& factor) : m_factor(factor) {}

 private:
  Matrix GetTransformImpl() const override {
    Matrix m;
    m.SetScale(m_factor);
    return m;
  }
  float const& m_factor;
};

class EnvironmentMap : public testing::Test, protected World {
 protected:
  Pointer<NEnvironmentMap> map{new NEnvironmentMap};
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override { EXPECT_TRUE(map->AddObserver(*recorder)); }
  std::vector<std::string> Heard() { return std::exchange(recorder->heard, {}); }
};

TEST_F(EnvironmentMap, StartsAsACubeMapOfNothing) {
  EXPECT_EQ(map->GetImageType(), NEMIT_CUBE);
  EXPECT_FALSE(map->GetImage());
  EXPECT_FALSE(map->GetImageRef());
  EXPECT_FALSE(map->GetTransform());
}

TEST_F(EnvironmentMap, TellsOfEveryTypeAndImageThatItIsGiven) {
  auto image = images->CreateNode();
  recorder->react = [&](NEnvironmentMap const& changed) {
    EXPECT_EQ(&changed, map.get());
    EXPECT_EQ(changed.GetImage(), image);
  };
  map->SetImage(image);
  map->SetImage(map->GetImageRef());
  map->SetImageType(NEMIT_SQUARE);
  map->SetImageType(NEMIT_SQUARE);
  map->SetImageType(static_cast<NEnvironmentMapImageType>(7));
  EXPECT_THAT(Heard(), ElementsAre("image", "image", "type 2", "type 2", "type 7"));

  recorder->react = nullptr;
  images->RemoveNode(*image);
  image.reset();
  EXPECT_FALSE(map->GetImage());
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(EnvironmentMap, AsksItsTransformAnewAndSaysNothingOfIt) {
  float factor = 2.0f;
  auto scaling = New<Scaling>(factor);
  map->SetTransform(*scaling);
  scaling.reset();
  map->SetTransform(*map->GetTransform());
  factor = 3.0f;
  EXPECT_EQ(map->GetTransform()->GetTransform()(0, 0), 3.0f);
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(EnvironmentMap, OutlivesAHandlerThatLetsItGo) {
  auto const second = New<Recorder>();
  map->AddObserver(*second);
  recorder->react = [&](NEnvironmentMap const&) { map.reset(); };
  map->SetImageType(NEMIT_RECTANGULAR);
  EXPECT_THAT(second->heard, ElementsAre("type 1"));
}

}  // namespace
}  // namespace corvanta::data::environment_map
