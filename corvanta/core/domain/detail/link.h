#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/reference_countable/NReferenceCountable.h"

namespace corvanta::core::domain::detail {

/// The way from an object to an owner that may end before it: shared by all the objects of the
/// owner, and cleared by the owner's end.
template <class Owner>
class NLink final : public reference_countable::NReferenceCountable {
 public:
  explicit NLink(Owner* linked) noexcept : owner(linked) {}
  Owner* owner;

 private:
  ~NLink() override = default;
};

template <class Owner>
using NLinkPointer = boost::intrusive_ptr<NLink<Owner>>;

}  // namespace corvanta::core::domain::detail
