#include "corvanta/core/name/NNamespace.h"

#include <boost/intrusive_ptr.hpp>
#include <utility>

namespace corvanta::core::name {

NNamespace::~NNamespace() {
  for (NNamedObject* const object : m_objects) object->m_namespace = nullptr;
}

bool NNamespace::AreNamesUniqueImpl() const noexcept { return false; }

bool NNamespace::AddNamedObject(NNamedObject& object) {
  if (object.m_namespace != nullptr) return false;
  if (AreNamesUniqueImpl() && QueryNamedObject(object.m_name) != nullptr) return false;
  m_objects.insert(&object);
  object.m_namespace = this;
  return true;
}

bool NNamespace::RemoveNamedObject(NNamedObject& object) noexcept {
  if (object.m_namespace != this || !Erase(object)) return false;
  object.m_namespace = nullptr;
  return true;
}

NNamedObject* NNamespace::QueryNamedObject(std::wstring const& name) const noexcept {
  auto const found = m_objects.find(std::wstring_view(name));
  return found == m_objects.end() ? nullptr : *found;
}

std::wstring NNamespace::MakeFreeName(std::wstring const& name) {
  if (QueryNamedObject(name) == nullptr) return name;
  unsigned long& number = m_lastNumbers.try_emplace(name, 1).first->second;
  std::wstring free;
  do {
    free = name + L" (" + std::to_wstring(++number) + L")";
  } while (QueryNamedObject(free) != nullptr);
  return free;
}

void NNamespace::Rename(NNamedObject& object, std::wstring const& name) {
  boost::intrusive_ptr<NNamespace const> const held(TryAddRef() ? this : nullptr, false);
  boost::intrusive_ptr<NNamedObject const> const heldObject(object.TryAddRef() ? &object : nullptr,
                                                            false);
  bool const isFree =
      !AreNamesUniqueImpl() || name == object.m_name || QueryNamedObject(name) == nullptr;
  std::wstring given = isFree ? name : MakeFreeName(name);
  if (given != object.m_name) {
    // The hash node is moved over, so that nothing can fail once the object has left its old place.
    auto range = m_objects.equal_range(&object);
    while (*range.first != &object) ++range.first;
    auto node = m_objects.extract(range.first);
    object.m_name = std::move(given);
    m_objects.insert(std::move(node));
  }
  m_listeners.Deliver<NNameListener>(
      [&](NNameListener& listener) { listener.SignalSetName(*this, object); });
}

bool NNamespace::Erase(NNamedObject& object) noexcept {
  auto const range = m_objects.equal_range(&object);
  for (auto i = range.first; i != range.second; ++i) {
    if (*i == &object) {
      m_objects.erase(i);
      return true;
    }
  }
  return false;
}

bool NNamespace::AddNameListener(NNameListener& listener) {
  return m_listeners.AddObserver(listener, &listener);
}

bool NNamespace::RemoveNameListener(NNameListener& listener) {
  return m_listeners.RemoveObserver(listener);
}

}  // namespace corvanta::core::name
