#include "tests/support/temporary_files.h"
#include "tests/support/world.h"
#include "tests/support/zip_archive.h"

namespace corvanta::data::domain {
namespace {

using namespace environment_map;

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
  long GetHint() { return node->QueryAttribute(image::AN_FORMAT_HINT)->GetValue().GetLong(); }
};

/// That the hint of a format was told.
auto IsHint(double format) { return testing::Pair(L"formatHint", format); }

std::string Content(Pointer<data::resource::image::NImage> const& image) {
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
  EXPECT_EQ(after->GetType(), data::resource::image::NIT_RAW);
}

TEST_F(ImageNode, GivesTheNotFoundPictureForWhatItCannotLoad) {
  for (NLocator const& locator : {NLocator(), Locate("missing.png"), Write("photo.jpg", "none")}) {
    node->SetImageLocator(locator);
    EXPECT_EQ(Content(node->GetImage()), "the board");
    EXPECT_EQ(node->GetImage()->GetType(), data::resource::image::NIT_RAW);
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

// Turns the three around and adds to each, so that no two of them can be mistaken for each other.
class Turn final : public core::color::ColorTransform {
 public:
  void Transform(double& r, double& g, double& b) const override {
    double const red = r;
    r = g + 1.0;
    g = b + 2.0;
    b = red + 3.0;
  }
};

class ColorTranslator : public testing::Test, protected support::World {
 protected:
  Pointer<support::AttributeLog> recorder = ListenToAttributes();
  Turn turn;
  detail::NNodeColorTranslator translator{turn};

  // The colours of `node`, by the names without their ends, and nothing but these are translated.
  void ExpectTranslated(NNode& node, std::vector<std::wstring> const& colors) {
    std::vector<std::wstring> names;
    double value = 0.0;
    for (std::wstring const& color : colors) {
      for (wchar_t const* const end : {L".r", L".g", L".b"}) {
        names.push_back(color + end);
        ASSERT_TRUE(node.QueryAttribute(names.back())) << testing::PrintToString(names.back());
        node.QueryAttribute(names.back())->SetValue(value += 0.125, false);
      }
    }
    recorder->Take();
    node.Accept(translator);
    EXPECT_THAT(recorder->TakeNames(), ElementsAreArray(names));
    value = 0.0;
    for (std::wstring const& color : colors) {
      double const red = value + 0.125;
      value += 0.375;
      EXPECT_EQ(node.QueryAttribute(color + L".r")->GetDouble(), red + 0.125 + 1.0);
      EXPECT_EQ(node.QueryAttribute(color + L".g")->GetDouble(), red + 0.25 + 2.0);
      EXPECT_EQ(node.QueryAttribute(color + L".b")->GetDouble(), red + 3.0);
    }
  }
};

TEST_F(ColorTranslator, TranslatesTheColorsOfThreeKinds) {
  ExpectTranslated(*lights->CreateNode(), {L"color"});
  ExpectTranslated(*environments->CreateNode(), {L"color", L"ambientLight", L"floor.color"});
  ExpectTranslated(*materials->CreateNode(),
                   {L"diffuse", L"ambient", L"specular", L"emissive", L"fleck.specular"});
}

TEST_F(ColorTranslator, LeavesOtherKindsAloneWhateverTheirAttributes) {
  auto const texture = textures->CreateNode();
  for (wchar_t const* const name : {L"color.r", L"color.g", L"color.b"}) {
    texture->AddAttribute(name, true)->SetValue(0.5, false);
  }
  texture->Accept(translator);
  EXPECT_THAT(recorder->TakeNames(), IsEmpty());
  EXPECT_EQ(texture->QueryAttribute(L"color.r")->GetDouble(), 0.5);
}

TEST_F(ColorTranslator, OutlivesAHandlerThatLetsTheNodeGo) {
  NNode& node = *materials->CreateNode();
  recorder->react = [&](auto&) { materials->RemoveNode(static_cast<NMaterialNode&>(node)); };
  node.Accept(translator);
  EXPECT_EQ(recorder->Take().size(), 15u);
}

}  // namespace
}  // namespace corvanta::data::domain
