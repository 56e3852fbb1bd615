#pragma once

#include <boost/intrusive_ptr.hpp>
#include <concepts>
#include <type_traits>

#include "corvanta/data/domain/scenegraph/detail/NSceneGraphPathImpl.h"

namespace corvanta::data::domain::scenegraph {

/// The address of an item of class `T`, which one item alone isn't: a tree can be shown several
/// times.
///
/// Check point 0 is in the outermost tree, the next one in the tree that it shows, the item in
/// the tree shown by the last. A value that owns nothing, and a key of std::map and std::set.
template <class T>
class NSceneGraphPath : public detail::NSceneGraphPathImpl {
 public:
  NSceneGraphPath() = default;
  NSceneGraphPath(core::node::NNodeReference<T const> const& item, TreeReference const& tree,
                  CheckPoints const& checkPoints = {})
      : NSceneGraphPathImpl(ItemReference(item), tree, checkPoints) {}
  /// From a path to a derived class, or to the same class with or without const.
  template <class U>
  requires(!std::same_as<U, T> && (std::same_as<std::remove_const_t<U>, std::remove_const_t<T>> ||
                                   std::convertible_to<U*, T const*>))
      NSceneGraphPath(NSceneGraphPath<U> const& other)
      : NSceneGraphPathImpl(other) {}
  /// From a path to an item of any class; GetNode gives null if it turns out to be no `T`.
  explicit NSceneGraphPath(detail::NSceneGraphPathImpl const& other) : NSceneGraphPathImpl(other) {}

  /// Fails: null when the item has gone or is of another class.
  boost::intrusive_ptr<T> GetNode() const {
    return core::node::NNodeReference<T>(
               static_cast<core::node::detail::NNodeReferenceImpl const&>(GetItemRef()))
        .Get();
  }

  bool operator==(NSceneGraphPath const& other) const noexcept { return Equals(other); }
  /// Without it a path of `T` and one of `T const` would each turn into the other.
  template <class U>
  bool operator==(NSceneGraphPath<U> const& other) const noexcept {
    return Equals(other);
  }
  bool operator<(NSceneGraphPath const& other) const noexcept { return Less(other); }
};

/// See detail::IsValid.
template <class T>
bool IsValid(NSceneGraphPath<T> const& path) {
  return detail::IsValid(path);
}

/// See detail::GetState.
template <class T>
core::node::NReferenceState GetState(NSceneGraphPath<T> const& path) {
  return detail::GetState(path);
}

/// See detail::GetPathRelation.
template <class T, class U>
SGPathRelation GetPathRelation(NSceneGraphPath<T> const& first, NSceneGraphPath<U> const& second) {
  return detail::GetPathRelation(first, second);
}

}  // namespace corvanta::data::domain::scenegraph
