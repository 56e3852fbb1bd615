#pragma once

#include <string>
#include <vector>

#include "app/output/record.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

enum NDifferenceKind {
  NDK_ADDED,    ///< a node that is only in the later document
  NDK_REMOVED,  ///< a node that is only in the earlier one
  NDK_CHANGED,  ///< something of a node that is in both
};

/// One thing in which two documents differ.
struct NDifference {
  NDifferenceKind kind;
  std::string nodeKind;  // as GetKind
  std::string place;     // names from the root down to an item, "car/wheel"; else the name
  // What has changed: an attribute's name; "parent"; "geometry", "material", "textures" and what
  // else DescribeNode tells; and without values "order of children", "coordinates", "normals",
  // "indices", "texture coordinates" and "keys".
  std::string what;
  NRecord before = nullptr, after = nullptr;
  std::size_t itemsBelow = 0;  // that came or went with an item
};

/// What differs between two documents, domain by domain: what went, what came, what has changed.
///
/// Two nodes are the same one if their kinds are the same, and their ids or else their names; a
/// domain gives each name once. What isn't finite is the same as itself. Items that come or go with
/// one above them are counted there.
/// Cost: linear in nodes, attributes and arrays, beside look-ups.
std::vector<NDifference> Compare(data::document::NDocument const& before,
                                 data::document::NDocument const& after);

/// A difference as a line of text, and as it is printed as JSON.
std::string FormatDifference(NDifference const& difference);
NRecord DescribeDifference(NDifference const& difference);

}  // namespace corvanta::app
