#pragma once

#include <boost/intrusive_ptr.hpp>
#include <concepts>
#include <type_traits>
#include <typeinfo>

#include "corvanta/core/node/NNode.h"
#include "corvanta/core/node/detail/NNodeReferenceImpl.h"

namespace corvanta::core::node {

/// A typed reference to a node, a value. It owns nothing and reads as null when its node has gone
/// or is of another class. `T` may be a const type.
template <class T>
class NNodeReference : public detail::NNodeReferenceImpl {
 public:
  /// Refers to nothing.
  NNodeReference() noexcept = default;
  NNodeReference(T const& node) : NNodeReferenceImpl(&node) {}
  template <class U>
  requires std::convertible_to<U*, T const*> NNodeReference(boost::intrusive_ptr<U> const& node)
      : NNodeReferenceImpl(node.get()) {}
  /// From a reference to a derived class, or to the same class with or without const.
  template <class U>
  requires(std::same_as<std::remove_const_t<U>, std::remove_const_t<T>> ||
           std::convertible_to<U*, T const*>) NNodeReference(NNodeReference<U> const& other)
  noexcept : NNodeReferenceImpl(other) {}
  /// From a reference of any kind; it reads as null if the node turns out to be no `T`.
  explicit NNodeReference(NNodeReferenceImpl const& other) noexcept : NNodeReferenceImpl(other) {}

  /// Fails: null when the reference is empty, the node has gone, or it is of another class.
  boost::intrusive_ptr<T> Get() const noexcept {
    auto const node = GetNode();
    return Cast(node.get());
  }
  operator boost::intrusive_ptr<T>() const noexcept { return Get(); }
  /// Why Get gives null, if it does.
  NReferenceState GetState() const noexcept {
    if (!*this) return NRS_NEVER_SET;
    auto const node = GetNode();
    if (!node) return NRS_GONE;
    return Cast(node.get()) == nullptr ? NRS_OTHER_CLASS : NRS_RESOLVED;
  }

  bool operator==(NNodeReference const& other) const noexcept { return Equals(other); }
  /// Without it a reference to `T` and one to `T const` would each turn into the other.
  template <class U>
  bool operator==(NNodeReference<U> const& other) const noexcept {
    return Equals(other);
  }
  bool operator<(NNodeReference const& other) const noexcept { return Less(other); }

 private:
  static T* Cast(NNode const* node) noexcept {
    if (node == nullptr) return nullptr;
    if constexpr (std::is_same_v<std::remove_const_t<T>, NNode>) {
      return const_cast<T*>(node);
    } else {
      // The exact class is the common case, and a comparison is cheaper than a dynamic_cast.
      T const* const typed =
          typeid(*node) == typeid(T) ? static_cast<T const*>(node) : dynamic_cast<T const*>(node);
      return const_cast<T*>(typed);
    }
  }
};

}  // namespace corvanta::core::node
