#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "corvanta/core/name/NNameListener.h"
#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/observer/detail/NObservableImpl.h"
#include "corvanta/export.h"

namespace corvanta::core::name {

/// A set of named objects, which it doesn't own, with listeners of their names.
///
/// Here names may be shared; in an NStrictNamespace they may not. The empty name is a name like any
/// other.
class CORVANTA_API NNamespace
    : public virtual reference_countable::NReferenceCountableWithWeakReference {
 public:
  /// Fails: false if the object stands in a namespace already, or its name is taken where names are
  /// unique.
  bool AddNamedObject(NNamedObject& object);
  /// The same, but where names are unique and the object's is taken, the object gets a free one
  /// from MakeFreeName. Nobody hears of that name. Fails: false if the object stands in a namespace
  /// already.
  bool AddUnderFreeName(NNamedObject& object);
  /// Fails: false if the object doesn't stand here.
  bool RemoveNamedObject(NNamedObject& object) noexcept;
  /// An object of that name; any of them where names are shared.
  /// Fails: null if there is none.
  NNamedObject* QueryNamedObject(std::wstring const& name) const noexcept;
  std::size_t GetNamedObjectCount() const noexcept { return m_objects.size(); }

  /// `name` if it is free here, or with the number after the highest that was given for it: a name
  /// that is taken by nobody. Numbers that became free aren't given again.
  /// Cost: amortised constant.
  std::wstring MakeFreeName(std::wstring const& name);

  /// Fails: false if `listener` is registered already.
  bool AddNameListener(NNameListener& listener);
  /// Fails: false if `listener` isn't registered.
  bool RemoveNameListener(NNameListener& listener);

 protected:
  NNamespace() = default;
  NNamespace(NNamespace const&) = delete;
  NNamespace& operator=(NNamespace const&) = delete;
  ~NNamespace() override;

 private:
  friend class NNamedObject;

  // Not noexcept: then the table keeps each hash, and a look-up doesn't visit every object it
  // passes.
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view name) const {
      return std::hash<std::wstring_view>()(name);
    }
    std::size_t operator()(NNamedObject const* object) const {
      return (*this)(std::wstring_view(object->GetName()));
    }
  };
  struct Equal {
    using is_transparent = void;
    static std::wstring_view Text(std::wstring_view name) noexcept { return name; }
    static std::wstring_view Text(NNamedObject const* object) noexcept { return object->GetName(); }
    template <class A, class B>
    bool operator()(A const& a, B const& b) const noexcept {
      return Text(a) == Text(b);
    }
  };

  virtual bool AreNamesUniqueImpl() const noexcept;

  std::wstring MakeNumberedName(std::wstring const& name);
  void Rename(NNamedObject& object, std::wstring const& name);
  bool Erase(NNamedObject& object) noexcept;

  std::unordered_multiset<NNamedObject*, Hash, Equal> m_objects;
  std::unordered_map<std::wstring, unsigned long> m_lastNumbers;
  observer::detail::NObservableImpl m_listeners;
};

}  // namespace corvanta::core::name
