#include "tests/support/world.h"

namespace corvanta::data::domain::texture {
namespace {

class Texture : public testing::Test, protected World {
 protected:
  Pointer<NImageNode> image = images->CreateNode();
  Pointer<NTextureNode> node = textures->CreateNode();
  Pointer<support::EventLog> log = Listen();
};

TEST_F(Texture, TellsOfEveryImageThatItIsGiven) {
  EXPECT_FALSE(node->GetImage());
  Pointer<NImageNode> given = image;
  log->react = [&](NSignal const& signal) {
    EXPECT_EQ(signal.node, node.get());
    EXPECT_EQ(node->GetImage(), given);
  };
  node->SetImage(image);
  node->SetImage(node->GetImageRef());
  EXPECT_EQ(node->GetImage(), image);
  given = nullptr;
  node->SetImage({});
  EXPECT_FALSE(node->GetImageRef());
  EXPECT_THAT(log->names, ElementsAreArray(std::vector(3, std::string("textureImageChange"))));
}

TEST_F(Texture, SaysNothingWhenItsImageGoes) {
  node->SetImage(image);
  log->Take();
  images->RemoveNode(*image);
  image.reset();
  EXPECT_FALSE(node->GetImage());
  EXPECT_TRUE(node->GetImageRef());
  EXPECT_THAT(log->names, IsEmpty());
}

TEST_F(Texture, CopiesItsImageWithoutASignal) {
  node->SetImage(image);
  auto const target = textures->CreateNode();
  node->CopyTo(*target);
  EXPECT_EQ(target->GetImage(), image);
  EXPECT_THAT(log->names, SizeIs(1));
}

TEST_F(Texture, WithoutAMultiplexerTellsItsOwnObservers) {
  auto const quiet = New<NTextureDomain>(nullptr, nullptr, nullptr);
  auto const texture = quiet->CreateNode();
  ASSERT_TRUE(texture);
  texture->SetImage(image);
  EXPECT_THAT(log->names, IsEmpty());
  EXPECT_TRUE(texture->AddObserver(events->GetTextureEventMultiplexer()));
  texture->SetImage(image);
  EXPECT_THAT(log->names, SizeIs(1));
}

TEST_F(Texture, OutlivesAHandlerThatLetsItGo) {
  log->react = [&](NSignal const&) {
    textures->RemoveNode(*node);
    node.reset();
  };
  node->SetImage(image);
  EXPECT_THAT(log->names, SizeIs(1));
}

}  // namespace
}  // namespace corvanta::data::domain::texture
