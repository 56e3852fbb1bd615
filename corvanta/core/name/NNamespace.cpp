#include "corvanta/core/name/NNamespace.h"

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <charconv>
#include <limits>
#include <utility>

namespace corvanta::core::name {

namespace {

/// Makes "light (2)" of "light" and 2.
void AppendNumber(std::wstring& name, unsigned long number) {
  std::array<char, std::numeric_limits<unsigned long>::digits10 + 1> digits;
  char const* const begin = digits.data();
  char const* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  name.reserve(name.size() + static_cast<std::size_t>(end - begin) + 3);
  name.append(L" (").append(begin, end).push_back(L')');
}

}  // namespace

NNamespace::~NNamespace() {
  m_objects.ForEach([](NNamedObject& object) { object.m_namespace = nullptr; });
}

bool NNamespace::AreNamesUniqueImpl() const noexcept { return false; }

bool NNamespace::AddNamedObject(NNamedObject& object) {
  if (object.m_namespace != nullptr) return false;
  if (AreNamesUniqueImpl() && QueryNamedObject(object.m_name) != nullptr) return false;
  m_objects.Insert(object);
  object.m_namespace = this;
  return true;
}

bool NNamespace::AddUnderFreeName(NNamedObject& object) {
  if (object.m_namespace != nullptr) return false;
  if (!AreNamesUniqueImpl() || QueryNamedObject(object.m_name) == nullptr) {
    m_objects.Insert(object);
  } else {
    // In the object's own text, which has room for a number: see node::NNode.
    std::size_t const length = object.m_name.size();
    unsigned long& number = LastNumberOf(object.m_name);
    try {
      do {
        object.m_name.resize(length);
        AppendNumber(object.m_name, number + 1);
        ++number;
      } while (QueryNamedObject(object.m_name) != nullptr);
      m_objects.Insert(object);
    } catch (...) {
      object.m_name.resize(length);
      throw;
    }
  }
  object.m_namespace = this;
  return true;
}

bool NNamespace::RemoveNamedObject(NNamedObject& object) noexcept {
  if (object.m_namespace != this) return false;
  m_objects.Remove(object);
  object.m_namespace = nullptr;
  return true;
}

NNamedObject* NNamespace::QueryNamedObject(std::wstring const& name) const noexcept {
  return m_objects.Find(name);
}

std::wstring NNamespace::MakeFreeName(std::wstring const& name) {
  return QueryNamedObject(name) == nullptr ? name : MakeNumberedName(name);
}

unsigned long& NNamespace::LastNumberOf(std::wstring const& name) {
  return m_lastNumbers.try_emplace(name, 1).first->second;
}

std::wstring NNamespace::MakeNumberedName(std::wstring const& name) {
  unsigned long& number = LastNumberOf(name);
  while (true) {
    std::wstring numbered = name;
    AppendNumber(numbered, number + 1);
    ++number;
    if (QueryNamedObject(numbered) == nullptr) return numbered;
  }
}

void NNamespace::Rename(NNamedObject& object, std::wstring const& name) {
  boost::intrusive_ptr<NNamespace const> const held(TryAddRef() ? this : nullptr, false);
  boost::intrusive_ptr<NNamedObject const> const heldObject(object.TryAddRef() ? &object : nullptr,
                                                            false);
  bool const isFree =
      !AreNamesUniqueImpl() || name == object.m_name || QueryNamedObject(name) == nullptr;
  std::wstring given = isFree ? name : MakeNumberedName(name);
  if (given != object.m_name) {
    m_objects.Remove(object);
    object.m_name = std::move(given);
    m_objects.Insert(object);
  }
  m_listeners.Deliver<NNameListener>(
      [&](NNameListener& listener) { listener.SignalSetName(*this, object); });
}

bool NNamespace::AddNameListener(NNameListener& listener) {
  return m_listeners.AddObserver(listener, &listener);
}

bool NNamespace::RemoveNameListener(NNameListener& listener) {
  return m_listeners.RemoveObserver(listener);
}

}  // namespace corvanta::core::name
