#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/variant/NVariant.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::app {

/// What is printed of a thing, in order: as JSON, or as a line of text by FormatRecord.
using NRecord = nlohmann::ordered_json;

/// "group", "model" and the like for items; for other nodes the type of their domain.
std::string GetKind(core::node::NNode const& node);

/// Kind, name and id, and what the node says beyond its attributes.
NRecord DescribeNode(core::node::NNode const& node);
/// The attributes of a node, in order of creation.
NRecord DescribeAttributes(core::node::NNode const& node);

/// Null for no value.
NRecord DescribeValue(core::variant::NVariant const& value);
/// Null for an empty box.
NRecord DescribeBox(VX_Math::Box3 const& box);
/// Sixteen numbers, row by row.
NRecord DescribeMatrix(VX_Math::Matrix const& matrix);

/// A record as one line, without the attributes.
std::string FormatRecord(NRecord const& record);
/// A value, a box or a matrix as text.
std::string FormatValue(NRecord const& value);

}  // namespace corvanta::app
