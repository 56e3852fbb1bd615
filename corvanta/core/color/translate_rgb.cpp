#include "corvanta/core/color/translate_rgb.h"

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/color/ColorTransform.h"
#include "corvanta/core/reference_countable/hold.h"

namespace corvanta::core::color::utility {

void TranslateRGB(attribute::NAttributeHost& host, wchar_t const* r, wchar_t const* g,
                  wchar_t const* b, ColorTransform const& transform) {
  // A handler of the first change may drop the last reference.
  auto const held = reference_countable::Hold(host);
  attribute::NAttribute* const attributes[] = {host.QueryAttribute(r), host.QueryAttribute(g),
                                               host.QueryAttribute(b)};
  if (!attributes[0] || !attributes[1] || !attributes[2]) return;
  double color[3];
  for (int i = 0; i < 3; ++i) color[i] = attributes[i]->GetValue().GetDouble();
  transform.Transform(color[0], color[1], color[2]);
  for (int i = 0; i < 3; ++i) attributes[i]->SetValue(variant::NVariant(color[i]), true);
}

}  // namespace corvanta::core::color::utility

namespace corvanta::core::color {

ColorTransform::~ColorTransform() = default;

}  // namespace corvanta::core::color
