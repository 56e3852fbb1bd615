#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "corvanta/core/detail/intrusive_table.h"
#include "corvanta/core/name/NNameListener.h"
#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/observer/detail/NObservableImpl.h"
#include "corvanta/export.h"

namespace corvanta::core::detail {
class NChangeRecorder;
}

namespace corvanta::core::name {

/// A set of named objects, which it doesn't own, with listeners of their names.
///
/// Here names may be shared; in an NStrictNamespace they may not. The empty name is a name like any
/// other.
class CORVANTA_API NNamespace
    : public virtual reference_countable::NReferenceCountableWithWeakReference {
 public:
  /// Fails: false if the object is in a namespace already, or its name is taken where names are
  /// unique.
  bool AddNamedObject(NNamedObject& object);
  /// The same, but where names are unique and the object's is taken, the object gets a free one
  /// from MakeFreeName. Nobody is notified of that name.
  /// Fails: false if the object is in a namespace already.
  bool AddUnderFreeName(NNamedObject& object);
  /// Takes the memory for AddUnderFreeName of `object` and of `others` more after it.
  void PrepareFreeName(NNamedObject& object, std::size_t others);
  /// Fails: false if the object doesn't stand here.
  bool RemoveNamedObject(NNamedObject& object) noexcept;
  /// An object of that name; any of them where names are shared.
  /// Fails: null if there is none.
  NNamedObject* QueryNamedObject(std::wstring const& name) const noexcept;
  std::size_t GetNamedObjectCount() const noexcept { return m_objects.GetSize(); }

  /// `name` if it is free here, or with the number after the highest that was given for it: a name
  /// that is taken by nobody. Numbers that became free aren't given again.
  /// Cost: amortised constant.
  std::wstring MakeFreeName(std::wstring const& name);

  /// A listener whose count is 0 receives nothing until somebody holds it by
  /// `boost::intrusive_ptr`.
  /// Fails: false if `listener` is registered already.
  bool AddNameListener(NNameListener& listener);
  /// Fails: false if `listener` isn't registered.
  bool RemoveNameListener(NNameListener& listener);
  /// Who is notified before all listeners; null for nobody. Isn't owned.
  void SetRecorder(core::detail::NChangeRecorder* recorder) noexcept { m_recorder = recorder; }

 protected:
  NNamespace() = default;
  NNamespace(NNamespace const&) = delete;
  NNamespace& operator=(NNamespace const&) = delete;
  ~NNamespace() override;

 private:
  friend class NNamedObject;

  struct Traits {
    static NNamedObject*& Next(NNamedObject& object) noexcept { return object.m_nextNamed; }
    static std::size_t Hash(NNamedObject const& object) noexcept { return Hash(object.m_name); }
    static std::size_t Hash(std::wstring const& name) noexcept {
      return std::hash<std::wstring>()(name);
    }
    static bool Matches(NNamedObject const& object, std::wstring const& name) noexcept {
      return object.m_name == name;
    }
  };

  virtual bool AreNamesUniqueImpl() const noexcept;

  unsigned long& LastNumberOf(std::wstring const& name);
  std::wstring MakeNumberedName(std::wstring const& name);
  void Rename(NNamedObject& object, std::wstring const& name);
  void SignalSetName(NNamedObject& object, std::wstring const* previous);

  core::detail::NIntrusiveTable<NNamedObject, Traits> m_objects;
  std::unordered_map<std::wstring, unsigned long> m_lastNumbers;
  observer::detail::NObservableImpl m_listeners;
  core::detail::NChangeRecorder* m_recorder = nullptr;
};

}  // namespace corvanta::core::name
