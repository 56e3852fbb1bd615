#include "corvanta/data/domain/detail/NNodeColorTranslator.h"

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/color/ColorTransform.h"
#include "corvanta/core/color/translate_rgb.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"

namespace corvanta::data::domain::detail {

namespace {

using core::color::ColorTransform;

// The names of a colour's attributes.
struct Color {
  wchar_t const* r;
  wchar_t const* g;
  wchar_t const* b;
};

constexpr Color kEnvironmentColors[] = {
    {L"color.r", L"color.g", L"color.b"},
    {L"ambientLight.r", L"ambientLight.g", L"ambientLight.b"},
    {L"floor.color.r", L"floor.color.g", L"floor.color.b"},
};
constexpr Color kLightColors[] = {{L"color.r", L"color.g", L"color.b"}};
constexpr Color kMaterialColors[] = {
    {L"diffuse.r", L"diffuse.g", L"diffuse.b"},
    {L"ambient.r", L"ambient.g", L"ambient.b"},
    {L"specular.r", L"specular.g", L"specular.b"},
    {L"emissive.r", L"emissive.g", L"emissive.b"},
    {L"fleck.specular.r", L"fleck.specular.g", L"fleck.specular.b"},
};

template <std::size_t kCount>
void TranslateColors(NNode& node, Color const (&colors)[kCount], ColorTransform const& transform) {
  auto const held = core::reference_countable::Hold(node);
  for (Color const& color : colors) {
    core::color::utility::TranslateRGB(node, color.r, color.g, color.b, transform);
  }
}

void Translate(environment::NEnvironmentNode& node, ColorTransform const& transform) {
  TranslateColors(node, kEnvironmentColors, transform);
}
void Translate(light::NLightNode& node, ColorTransform const& transform) {
  TranslateColors(node, kLightColors, transform);
}
void Translate(material::NMaterialNode& node, ColorTransform const& transform) {
  TranslateColors(node, kMaterialColors, transform);
}
// The kinds without colours.
template <class Node>
void Translate(Node&, ColorTransform const&) {}

}  // namespace

NNodeColorTranslator::NNodeColorTranslator(ColorTransform const& transform) noexcept
    : m_transform(transform) {}

NNodeColorTranslator::~NNodeColorTranslator() = default;

#define CORVANTA_KIND(SPACE, CLASS) \
  void NNodeColorTranslator::VisitImpl(SPACE::CLASS& node) { Translate(node, m_transform); }
#include "corvanta/data/domain/node_kinds.def"

}  // namespace corvanta::data::domain::detail
