#pragma once

#include <boost/intrusive_ptr.hpp>
#include <stdexcept>
#include <string>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/variant/NVariant.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// An assignment that can't be carried out; `what()` is the reason in UTF-8.
class NAssignmentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A value for an attribute of a node.
struct NAssignment {
  boost::intrusive_ptr<core::node::NNode> node;
  core::attribute::NAttribute* attribute = nullptr;  // of the node
  core::variant::NVariant value;                     // of the kind that the attribute holds
};

/// Finds what "NAME.ATTRIBUTE=VALUE" means in `document`. Names may hold points and equals signs:
/// the first equals sign counts before which a node and an attribute of it are found, with the
/// longest attribute; of several nodes of one name the first in the order of the domains that has
/// the attribute.
/// Fails: throws NAssignmentError for an unknown name and for a value that isn't of the
/// attribute's kind, or is a number that no float can hold; "inf" and "nan" can be set.
NAssignment ParseAssignment(data::document::NDocument const& document, std::wstring const& text);

}  // namespace corvanta::app
