#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/variant/NVariant.h"
#include "corvanta/data/domain/image/NImageNode.h"
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

/// Bytes of the file of a picture, or of its entry in an archive.
/// Fails: nullopt if it isn't there.
std::optional<std::uint64_t> GetPictureBytes(data::domain::image::NImageNode const& image);

/// Null for no value.
NRecord DescribeValue(core::variant::NVariant const& value);
/// Null for an empty box.
NRecord DescribeBox(VX_Math::Box3 const& box);
/// Sixteen numbers, row by row.
NRecord DescribeMatrix(VX_Math::Matrix const& matrix);

/// Takes the ids out of a record and all in it, which are others in each run.
void RemoveIds(NRecord& record);

/// A record as one line, without the attributes. "itemsBelow" and "isAdded" come last.
std::string FormatRecord(NRecord const& record);
/// A value, a box or a matrix as text.
std::string FormatValue(NRecord const& value);

}  // namespace corvanta::app
