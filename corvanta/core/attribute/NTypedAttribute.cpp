#include "corvanta/core/attribute/NTypedAttribute.h"

#include "corvanta/core/attribute/NAttributeContainerError.h"
#include "corvanta/core/attribute/NAttributeHost.h"

namespace corvanta::core::attribute::detail {

NAttribute* CreateAttribute(NAttributeHost& host, NNameIndex name, bool flag,
                            variant::NVariant const& value) {
  NAttribute* const attribute = host.AddAttribute(name, flag);
  if (attribute == nullptr) throw NAttributeContainerError();
  attribute->SetValue(value, false);
  return attribute;
}

}  // namespace corvanta::core::attribute::detail
