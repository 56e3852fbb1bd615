#include "corvanta/core/name/NNamespace.h"

#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <utility>

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/detail/NChangeRecorder.h"
#include "corvanta/core/detail/previous_value.h"
#include "corvanta/core/name/NNameListener.h"
#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/name/NStrictNamespace.h"
#include "corvanta/core/reference_countable/hold.h"

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

/// Whether `name` is `text` with a number behind it that AppendNumber may have put there.
bool IsNumbered(std::wstring_view name, std::wstring_view text) noexcept {
  if (!name.starts_with(text)) return false;
  name.remove_prefix(text.size());
  if (name.size() < 4 || !name.starts_with(L" (") || name.back() != L')') return false;
  std::wstring_view const digits = name.substr(2, name.size() - 3);
  bool const isCounted = digits.front() != L'0' && digits != L"1";
  return isCounted && digits.find_first_not_of(L"0123456789") == digits.npos;
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
    unsigned long const before = number;
    try {
      do {
        object.m_name.resize(length);
        AppendNumber(object.m_name, number + 1);
        ++number;
      } while (QueryNamedObject(object.m_name) != nullptr);
      m_objects.Insert(object);
    } catch (...) {
      number = before;
      object.m_name.resize(length);
      throw;
    }
  }
  object.m_namespace = this;
  return true;
}

void NNamespace::PrepareFreeName(NNamedObject& object, std::size_t others) {
  LastNumberOf(object.m_name);
  object.m_name.reserve(object.m_name.size() + std::numeric_limits<unsigned long>::digits10 + 4);
  m_objects.Reserve(m_objects.GetSize() + 1 + others);
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
  auto const held = reference_countable::Hold(*this);
  auto const heldObject = reference_countable::Hold(object);
  bool const isFree = !AreNamesUniqueImpl() || QueryNamedObject(name) == nullptr;
  bool const isKept = name == object.m_name || (!isFree && IsNumbered(object.m_name, name));
  if (isKept) return SignalSetName(object, nullptr);
  std::wstring given = isFree ? name : MakeNumberedName(name);
  m_objects.Remove(object);
  object.m_name.swap(given);
  m_objects.Insert(object);
  SignalSetName(object, &given);
}

/// `previous` is null for an object that keeps its name, which takes no memory.
void NNamespace::SignalSetName(NNamedObject& object, std::wstring const* previous) {
  std::wstring const* const listed = previous ? previous : &object.m_name;
  core::detail::NPreviousValue const entry(&object.m_name, listed);
  core::detail::NChangeScope const change(m_recorder);
  if (m_recorder != nullptr && previous != nullptr) m_recorder->OnSetName(object, *previous);
  m_listeners.Deliver<NNameListener>(
      [&](NNameListener& listener) { listener.SignalSetName(*this, object); });
}

bool NNamespace::AddNameListener(NNameListener& listener) {
  return m_listeners.AddObserver(listener, &listener);
}

bool NNamespace::RemoveNameListener(NNameListener& listener) {
  return m_listeners.RemoveObserver(listener);
}

std::wstring const& NNamedObject::GetPreviousName() const noexcept {
  void const* const previous = core::detail::NPreviousValue::Find(&m_name);
  return previous == nullptr ? m_name : *static_cast<std::wstring const*>(previous);
}

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

NNameListener::~NNameListener() = default;

NStrictNamespace::~NStrictNamespace() = default;

bool NStrictNamespace::AreNamesUniqueImpl() const noexcept { return true; }

}  // namespace corvanta::core::name
