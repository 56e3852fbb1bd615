#include <unistd.h>

#include "tests/support/test.h"
#include "tests/support/zip_archive.h"

namespace corvanta::data::domain::image {
namespace {

using core::locator::NLocator;
using core::uri::NPath;
using core::uri::NUri;

class Recorder final : public events::attribute_change::NListener {
 public:
  std::vector<std::wstring> heard;
  std::function<void()> react;

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const& attribute) override {
    heard.push_back(attribute.GetName() + L" " + std::to_wstring(attribute.GetValue().GetLong()));
    if (react) react();
  }
};

class ImageNode : public testing::Test {
 protected:
  std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) /
      ("corvanta_image_node." + std::to_string(getpid()));  // tests run side by side
  Pointer<events::attribute_change::NMultiplexer> multiplexer{
      new events::attribute_change::NMultiplexer};
  Pointer<Recorder> recorder{new Recorder};
  Pointer<NImageDomain> domain{new NImageDomain(nullptr, multiplexer.get())};
  Pointer<NImageNode> node = domain->CreateNode(NNodeID());

  void SetUp() override {
    std::filesystem::create_directories(folder);
    Write("notfound.dds", "the board");
    core::uri::SetResourceFolder(NPath(folder.wstring()));
    multiplexer->AddObserver(*recorder);
  }
  void TearDown() override {
    core::uri::SetResourceFolder(NPath());
    std::filesystem::remove_all(folder);
  }
  NLocator Locate(char const* name) {
    return NLocator(NUri::CreateFileUri(NPath((folder / name).wstring())));
  }
  NLocator Write(char const* name, std::string const& content) {
    std::ofstream(folder / name, std::ios::binary) << content;
    return Locate(name);
  }
  long GetHint() { return node->QueryAttribute(AN_FORMAT_HINT)->GetValue().GetLong(); }
  std::vector<std::wstring> Heard() { return std::exchange(recorder->heard, {}); }
};

std::string Content(Pointer<resource::image::NImage> const& image) {
  return {static_cast<char const*>(image->GetData()), image->GetDataByteLength()};
}

TEST_F(ImageNode, TellsOfItsLocatorByTheFormatThatItsFileAsksFor) {
  EXPECT_TRUE(node->GetImageLocator() == NLocator());
  NLocator const photo = Write("photo.jpg", "no JPEG at all");
  NLocator const picture = Write("picture.png", "raw bytes");
  NLocator const missing = Locate("missing.jpg");
  recorder->react = [&] { EXPECT_TRUE(node->GetImageLocator() == photo); };
  node->SetImageLocator(photo);
  recorder->react = nullptr;
  node->SetImageLocator(node->GetImageLocator());
  node->SetImageLocator(picture);
  node->SetImageLocator(missing);
  EXPECT_THAT(Heard(),
              ElementsAre(L"formatHint 1", L"formatHint 1", L"formatHint 0", L"formatHint 0"));
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
  Heard();
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
  EXPECT_THAT(Heard(), IsEmpty());

  // Who knows the pass may let go of the node.
  support::WriteZip(NPath((folder / "good.zip").wstring()), {{"photo.jpg", "none"}});
  entry = NLocator(Locate("good.zip").GetUri(), NPath(L"photo.jpg"));
  act = [&] {
    domain->RemoveNode(*node);
    node.reset();
  };
  raw->SetImageLocator(entry);
  EXPECT_THAT(Heard(), ElementsAre(L"formatHint 1"));
  core::zip::SetPassProvider(nullptr);
}

TEST_F(ImageNode, CopiesTheHintWithoutAskingTheFileAndTheLocatorLast) {
  NLocator const photo = Write("photo.jpg", "none");
  node->SetImageLocator(photo);
  std::filesystem::remove(folder / "photo.jpg");
  auto target = domain->CreateNode(NNodeID());
  Heard();
  recorder->react = [&] { EXPECT_TRUE(target->GetImageLocator() == NLocator()); };
  node->CopyTo(*target);
  EXPECT_THAT(Heard(), ElementsAre(L"formatHint 1"));
  EXPECT_TRUE(target->GetImageLocator() == photo);

  // A listener may let go of both.
  recorder->react = [&] {
    domain->RemoveNode(*node);
    domain->RemoveNode(*target);
    node.reset();
    target.reset();
  };
  node->CopyTo(*target);
  EXPECT_FALSE(target);
}

}  // namespace
}  // namespace corvanta::data::domain::image
