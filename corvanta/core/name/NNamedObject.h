#pragma once

#include <string>

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::core::name {

class NNamespace;

/// An object with a name. It is in one namespace at most, and leaves it when it dies.
class CORVANTA_API NNamedObject
    : public virtual reference_countable::NReferenceCountableWithWeakReference {
 public:
  std::wstring const& GetName() const noexcept { return m_name; }
  /// While listeners are notified of a SetName: the name before it, good as long. Outside of every
  /// such event the name itself.
  std::wstring const& GetPreviousName() const noexcept;
  /// Gives the object `name`. Where its namespace is strict and the name is another object's, it
  /// gets the name with a number behind it, "light (2)", or keeps such a name if it has one.
  /// Raises: SetName on the namespace's name listeners, always.
  /// Cost: its own name takes no memory.
  void SetName(std::wstring const& name);

  /// Null outside every namespace.
  NNamespace* GetNamespace() const noexcept { return m_namespace; }

 protected:
  NNamedObject() noexcept = default;
  explicit NNamedObject(std::wstring name) noexcept : m_name(std::move(name)) {}
  /// A copy has the name and is in no namespace.
  NNamedObject(NNamedObject const& other)
      : NReferenceCountableWithWeakReference(other), m_name(other.m_name) {}
  NNamedObject& operator=(NNamedObject const&) = delete;
  ~NNamedObject() override;

 private:
  friend class NNamespace;

  std::wstring m_name;
  NNamespace* m_namespace = nullptr;    // cleared by the namespace's end
  NNamedObject* m_nextNamed = nullptr;  // the link of the namespace's table
};

}  // namespace corvanta::core::name
