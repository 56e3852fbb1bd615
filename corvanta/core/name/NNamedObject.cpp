#include "corvanta/core/name/NNamedObject.h"

#include "corvanta/core/name/NNamespace.h"

namespace corvanta::core::name {

NNamedObject::~NNamedObject() {
  if (m_namespace != nullptr) m_namespace->RemoveNamedObject(*this);
}

void NNamedObject::SetName(std::wstring const& name) {
  if (m_namespace != nullptr) {
    m_namespace->Rename(*this, name);
  } else {
    m_name = name;
  }
}

}  // namespace corvanta::core::name
