#include "corvanta/core/attribute/NAttributeValues.h"

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/reference_countable/hold.h"

namespace corvanta::core::attribute {

NAttributeValues::NAttributeValues(NAttributeHost const& source) {
  for (auto i = source.GetAttributeBegin(); i != source.GetAttributeEnd(); ++i) {
    if (i->GetKind() != variant::NVK_NONE) m_values.emplace_back(i->GetNameIndex(), i->GetValue());
  }
}

void NAttributeValues::MoveTo(NAttributeHost& target) {
  // A handler may drop the last reference of the target.
  auto const held = reference_countable::Hold(target);
  auto values = std::move(m_values);
  m_values.clear();
  for (auto& [name, value] : values) {
    if (NAttribute* const attribute = target.QueryAttribute(name)) {
      attribute->SetValue(std::move(value), true);
    }
  }
}

}  // namespace corvanta::core::attribute
