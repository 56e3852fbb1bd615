#include "tests/support/world.h"

namespace corvanta::data::domain::texture {
namespace {

using ImageReference = NNodeReference<image::NImageNode>;

class Recorder final : public events::texture::NListener {
 public:
  int count = 0;
  NTextureNode const* texture = nullptr;
  Pointer<image::NImageNode> image;  // as the handler reads it
  std::function<void()> react;

 private:
  void OnTextureImageChange(NTextureNode const& changed) override {
    ++count;
    texture = &changed;
    image = changed.GetImage();
    if (react) react();
  }
};

class Texture : public testing::Test, protected support::World {
 protected:
  Pointer<Recorder> recorder{new Recorder};
  Pointer<image::NImageNode> image = images->CreateNode(NNodeID());
  Pointer<NTextureNode> node = textures->CreateNode(NNodeID());

  void SetUp() override { events->GetTextureEventMultiplexer().AddObserver(*recorder); }
};

TEST_F(Texture, TellsOfEveryImageThatItIsGiven) {
  EXPECT_FALSE(node->GetImage());
  node->SetImage(image);
  EXPECT_EQ(recorder->count, 1);
  EXPECT_EQ(recorder->texture, node.get());
  EXPECT_EQ(recorder->image, image);
  node->SetImage(node->GetImageRef());
  EXPECT_EQ(recorder->count, 2);
  EXPECT_EQ(node->GetImage(), image);
  node->SetImage(ImageReference());
  EXPECT_EQ(recorder->count, 3);
  EXPECT_FALSE(recorder->image);
  EXPECT_FALSE(node->GetImageRef());
}

TEST_F(Texture, SaysNothingWhenItsImageGoes) {
  node->SetImage(image);
  recorder->image.reset();
  images->RemoveNode(*image);
  image.reset();
  EXPECT_FALSE(node->GetImage());
  EXPECT_TRUE(node->GetImageRef());
  EXPECT_EQ(recorder->count, 1);
}

TEST_F(Texture, CopiesItsImageWithoutASignal) {
  node->SetImage(image);
  auto const target = textures->CreateNode(NNodeID());
  node->CopyTo(*target);
  EXPECT_EQ(target->GetImage(), image);
  EXPECT_EQ(recorder->count, 1);
}

TEST_F(Texture, WithoutAMultiplexerTellsItsOwnObservers) {
  Pointer<NTextureDomain> const quiet(new NTextureDomain(nullptr, nullptr, nullptr));
  auto const texture = quiet->CreateNode(NNodeID());
  ASSERT_TRUE(texture);
  texture->SetImage(image);
  EXPECT_EQ(recorder->count, 0);
  EXPECT_TRUE(texture->AddObserver(*recorder));
  texture->SetImage(image);
  EXPECT_EQ(recorder->count, 1);
}

TEST_F(Texture, OutlivesAHandlerThatLetsItGo) {
  recorder->react = [&] {
    textures->RemoveNode(*node);
    node.reset();
  };
  node->SetImage(image);
  EXPECT_EQ(recorder->count, 1);
}

}  // namespace
}  // namespace corvanta::data::domain::texture
