#include "tests/support/temporary_files.h"
#include "tests/support/world.h"
#include "tests/support/zip_archive.h"

namespace corvanta::data::domain::image {
namespace {

class ImageNode : public testing::Test, protected World {
 protected:
  support::TemporaryFiles const files;
  Pointer<support::AttributeLog> recorder = ListenToAttributes();
  Pointer<NImageNode> node = images->CreateNode();

  void SetUp() override {
    files.Write("notfound.dds", "the board");
    core::uri::SetResourceFolder(files.At(""));
  }
  void TearDown() override { core::uri::SetResourceFolder(NPath()); }
  NLocator Locate(char const* name) { return NLocator(NUri::CreateFileUri(files.At(name))); }
  NLocator Write(char const* name, std::string const& content) {
    files.Write(name, content);
    return Locate(name);
  }
  long GetHint() { return node->QueryAttribute(AN_FORMAT_HINT)->GetValue().GetLong(); }
};

/// That the hint of a format was told.
auto IsHint(double format) { return testing::Pair(L"formatHint", format); }

std::string Content(Pointer<resource::image::NImage> const& image) {
  return {static_cast<char const*>(image->GetData()), image->GetDataByteLength()};
}

TEST_F(ImageNode, TellsOfItsLocatorByTheFormatThatItsFileAsksFor) {
  EXPECT_TRUE(node->GetImageLocator() == NLocator());
  NLocator const photo = Write("photo.jpg", "no JPEG at all");
  NLocator const picture = Write("picture.png", "raw bytes");
  NLocator const missing = Locate("missing.jpg");
  recorder->react = [&](NAttribute const&) { EXPECT_TRUE(node->GetImageLocator() == photo); };
  node->SetImageLocator(photo);
  recorder->react = nullptr;
  node->SetImageLocator(node->GetImageLocator());
  node->SetImageLocator(picture);
  node->SetImageLocator(missing);
  EXPECT_THAT(recorder->Take(), ElementsAre(IsHint(1), IsHint(1), IsHint(0), IsHint(0)));
  EXPECT_TRUE(node->GetImageLocator() == missing);
}

TEST_F(ImageNode, LoadsAnewAtEveryCall) {
  node->SetImageLocator(Write("picture.png", "before"));
  auto const before = node->GetImage();
  Write("picture.png", "after");
  auto const after = node->GetImage();
  EXPECT_EQ(Content(before), "before");
  EXPECT_EQ(Content(after), "after");
  EXPECT_EQ(after->GetType(), resource::image::NIT_RAW);
}

TEST_F(ImageNode, GivesTheNotFoundPictureForWhatItCannotLoad) {
  for (NLocator const& locator : {NLocator(), Locate("missing.png"), Write("photo.jpg", "none")}) {
    node->SetImageLocator(locator);
    EXPECT_EQ(Content(node->GetImage()), "the board");
    EXPECT_EQ(node->GetImage()->GetType(), resource::image::NIT_RAW);
  }
}

TEST_F(ImageNode, HasItsLocatorBeforeTheFileIsJudged) {
  node->SetImageLocator(Write("photo.jpg", "none"));
  recorder->Take();
  NLocator entry(Write("broken.zip", "no archive").GetUri(), NPath(L"picture.png"));
  auto* const raw = node.get();
  std::function<void()> act = [] {};
  core::zip::SetPassProvider([&](NPath const&, core::zip::NPassType) {
    EXPECT_TRUE(raw->GetImageLocator() == entry);
    act();
    return std::wstring();
  });
  EXPECT_THROW(node->SetImageLocator(entry), core::error::NException);
  EXPECT_TRUE(node->GetImageLocator() == entry);
  EXPECT_EQ(GetHint(), 1);
  EXPECT_THAT(recorder->Take(), IsEmpty());

  // Who knows the pass may let go of the node.
  support::WriteZip(files.At("good.zip"), {{"photo.jpg", "none"}});
  entry = NLocator(Locate("good.zip").GetUri(), NPath(L"photo.jpg"));
  act = [&] {
    images->RemoveNode(*node);
    node.reset();
  };
  raw->SetImageLocator(entry);
  EXPECT_THAT(recorder->Take(), ElementsAre(IsHint(1)));
  core::zip::SetPassProvider(nullptr);
}

TEST_F(ImageNode, CopiesTheHintWithoutAskingTheFileAndTheLocatorLast) {
  NLocator const photo = Write("photo.jpg", "none");
  node->SetImageLocator(photo);
  std::filesystem::remove(files.GetFolder() / "photo.jpg");
  auto target = images->CreateNode();
  recorder->Take();
  recorder->react = [&](NAttribute const&) {
    EXPECT_TRUE(target->GetImageLocator() == NLocator());
  };
  node->CopyTo(*target);
  EXPECT_THAT(recorder->Take(), ElementsAre(IsHint(1)));
  EXPECT_TRUE(target->GetImageLocator() == photo);

  // A listener may let go of both.
  recorder->react = [&](NAttribute const&) {
    images->RemoveNode(*node);
    images->RemoveNode(*target);
    node.reset();
    target.reset();
  };
  node->CopyTo(*target);
  EXPECT_FALSE(target);
}

}  // namespace
}  // namespace corvanta::data::domain::image
