#include "tests/support/world.h"

namespace corvanta::data::domain::detail {
namespace {

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
  NNodeColorTranslator translator{turn};

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
}  // namespace corvanta::data::domain::detail
