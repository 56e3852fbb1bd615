#include "app/output/record.h"

#include <zip.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <memory>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "app/output/text.h"
#include "corvanta/core/domain/NDomainBase.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "corvanta/platform/temporary.h"

namespace corvanta::app {

namespace {

namespace domain = data::domain;
namespace item = data::domain::scenegraph::item;
using core::text::ToNarrow;

// A float by its own shortest digits, not by those of the double that it becomes.
NRecord Number(float value) {
  if (!std::isfinite(value)) return NumberText(value);
  std::string const text = NumberText(value);
  double number = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

NRecord Point(VX_Math::Vec3 const& v) {
  return NRecord::array({Number(v.x), Number(v.y), Number(v.z)});
}

template <class Node>
void Link(NRecord& record, char const* key, boost::intrusive_ptr<Node> const& node) {
  if (!node) return;
  record[key] = {{"name", ToNarrow(node->GetName())}, {"id", ToNarrow(node->GetID().ToString())}};
}

/// The lines and points of a surface that has nothing else, as the renderer draws it.
std::pair<std::size_t, std::size_t> CountLines(std::vector<unsigned> const& indices) {
  std::pair<std::size_t, std::size_t> counts;
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    unsigned const a = indices[i], b = indices[i + 1], c = indices[i + 2];
    if (a != b && b != c && a != c) return {};
    ++(a == b && b == c ? counts.second : counts.first);
  }
  return counts;
}

void Describe(domain::geometry::NGeometryNode const& node, NRecord& record) {
  std::size_t vertexCount = 0;
  std::size_t triangleCount = 0, lineCount = 0, pointCount = 0;
  std::set<unsigned> sets;
  for (auto const& surface : node.GetSurfaces()) {
    vertexCount += surface->GetCoords().size();
    auto const [lines, points] = CountLines(surface->GetIndices());
    lineCount += lines;
    pointCount += points;
    triangleCount += surface->GetIndices().size() / 3 - lines - points;
    for (auto const& [id, uvws] : surface->GetUVWsMap()) sets.insert(static_cast<unsigned>(id));
  }
  record["surfaces"] = node.GetSurfaces().size();
  record["vertices"] = vertexCount;
  record["triangles"] = triangleCount;
  if (lineCount != 0) record["lines"] = lineCount;
  if (pointCount != 0) record["points"] = pointCount;
  record["uvwSets"] = sets;
}

void Describe(domain::material::NMaterialNode const& node, NRecord& record) {
  NRecord textures = NRecord::array();
  for (auto const& [reference, mapping] : node.GetTextures()) {
    NRecord texture = NRecord::object();
    if (auto const resolved = reference.Get()) {
      texture["name"] = ToNarrow(resolved->GetName());
      texture["id"] = ToNarrow(resolved->GetID().ToString());
    }
    auto const* const uvw =
        dynamic_cast<domain::material::texture_mapping::NUVWMapping const*>(mapping.get());
    if (uvw != nullptr) texture["uvwMapping"] = static_cast<unsigned>(uvw->GetUVWMappingType());
    textures.push_back(std::move(texture));
  }
  record["textures"] = std::move(textures);
}

void Describe(domain::image::NImageNode const& node, NRecord& record) {
  auto const& locator = node.GetImageLocator();
  std::filesystem::path const file = ToNarrow(core::uri::GetFile(locator.GetUri()).ToString());
  std::string const entry =
      locator.IsZipped() ? ToNarrow(locator.GetZippedPath().ToString()) : std::string();
  // The importer's own archive is another one in each run.
  bool const isEmbedded =
      locator.IsZipped() && file.parent_path() == ToNarrow(platform::GetTemporaryFolder());
  if (!isEmbedded) record["file"] = file.string();
  if (locator.IsZipped()) record[isEmbedded ? "embedded" : "entry"] = entry;
  auto const size = GetPictureBytes(node);
  record["bytes"] = size ? NRecord(*size) : NRecord(nullptr);
}

void DescribeItem(item::NSceneGraphItemNode const& node, NRecord& record) {
  if (auto const* const model = dynamic_cast<item::NSceneGraphModelNode const*>(&node)) {
    Link(record, "geometry", model->GetGeometryNode());
    Link(record, "material", model->GetMaterialNode());
  } else if (auto const* const light = dynamic_cast<item::NSceneGraphLightNode const*>(&node)) {
    Link(record, "light", light->GetLightNode());
  } else if (auto const* const camera = dynamic_cast<item::NSceneGraphCameraNode const*>(&node)) {
    Link(record, "camera", camera->GetCameraNode());
  } else if (auto const* const shown = dynamic_cast<item::NSceneGraphReferenceNode const*>(&node)) {
    Link(record, "shows", shown->GetSceneGraph());
  }
}

void AppendField(std::string& line, std::string const& key, NRecord const& value) {
  line += ' ' + key + ' ';
  if (value.is_array()) {
    for (std::size_t i = 0; i != value.size(); ++i) {
      if (i != 0) line += ", ";
      line += FormatValue(value[i]);
    }
    if (value.empty()) line += "none";
  } else {
    line += FormatValue(value);
  }
}

}  // namespace

std::string GetKind(core::node::NNode const& node) {
  if (auto const* const placed = dynamic_cast<item::NSceneGraphItemNode const*>(&node)) {
    return ToNarrow(placed->GetSceneGraphItemType());
  }
  auto const* const owner = node.GetDomain();
  return owner != nullptr ? ToNarrow(owner->GetType()) : "node";
}

NRecord DescribeNode(core::node::NNode const& node) {
  NRecord record = {{"kind", GetKind(node)},
                    {"name", ToNarrow(node.GetName())},
                    {"id", ToNarrow(node.GetID().ToString())}};
  if (auto const* const placed = dynamic_cast<item::NSceneGraphItemNode const*>(&node)) {
    DescribeItem(*placed, record);
  } else if (auto const* const tree =
                 dynamic_cast<domain::scenegraph::tree::NSceneGraphTreeNode const*>(&node)) {
    Link(record, "root", tree->GetRoot());
  } else if (auto const* const geometry =
                 dynamic_cast<domain::geometry::NGeometryNode const*>(&node)) {
    Describe(*geometry, record);
  } else if (auto const* const material =
                 dynamic_cast<domain::material::NMaterialNode const*>(&node)) {
    Describe(*material, record);
  } else if (auto const* const texture =
                 dynamic_cast<domain::texture::NTextureNode const*>(&node)) {
    Link(record, "image", texture->GetImage());
  } else if (auto const* const image = dynamic_cast<domain::image::NImageNode const*>(&node)) {
    Describe(*image, record);
  }
  return record;
}

std::optional<std::uint64_t> GetPictureBytes(domain::image::NImageNode const& image) {
  auto const& locator = image.GetImageLocator();
  std::string const file = ToNarrow(core::uri::GetFile(locator.GetUri()).ToString());
  std::error_code error;
  if (!locator.IsZipped()) {
    std::uint64_t const size = std::filesystem::file_size(file, error);
    return error ? std::nullopt : std::optional(size);
  }
  std::unique_ptr<zip_t, decltype(&zip_discard)> const archive(
      zip_open(file.c_str(), ZIP_RDONLY, nullptr), &zip_discard);
  zip_stat_t status{};
  std::string const entry = ToNarrow(locator.GetZippedPath().ToString());
  bool const isKnown = archive && zip_stat(archive.get(), entry.c_str(), 0, &status) == 0 &&
                       (status.valid & ZIP_STAT_SIZE) != 0;
  return isKnown ? std::optional<std::uint64_t>(status.size) : std::nullopt;
}

NRecord DescribeAttributes(core::node::NNode const& node) {
  NRecord attributes = NRecord::object();
  for (auto at = node.GetAttributeBegin(); at != node.GetAttributeEnd(); ++at) {
    attributes[ToNarrow(at->GetName())] = DescribeValue(at->GetValue());
  }
  return attributes;
}

NRecord DescribeValue(core::variant::NVariant const& value) {
  switch (value.GetKind()) {
    case core::variant::NVK_DOUBLE:
      // JSON has no number for these.
      if (!std::isfinite(value.GetDouble())) return NumberText(value.GetDouble());
      return value.GetDouble();
    case core::variant::NVK_LONG:
      return value.GetLong();
    case core::variant::NVK_BOOL:
      return value.GetBool();
    case core::variant::NVK_STRING:
      return ToNarrow(value.GetString());
    default:
      return nullptr;
  }
}

NRecord DescribeBox(VX_Math::Box3 const& box) {
  if (box.IsEmpty()) return nullptr;
  return {{"min", Point(box.min)}, {"max", Point(box.max)}};
}

NRecord DescribeMatrix(VX_Math::Matrix const& matrix) {
  NRecord numbers = NRecord::array();
  for (int row = 0; row != 4; ++row) {
    for (int column = 0; column != 4; ++column) numbers.push_back(Number(matrix(row, column)));
  }
  return numbers;
}

std::string FormatValue(NRecord const& value) {
  if (value.is_null()) return "none";
  if (value.is_string()) return Quoted(value.get<std::string>());
  if (value.is_number_float()) return NumberText(value.get<double>());
  if (value.is_array()) {
    std::string text = "(";
    for (std::size_t i = 0; i != value.size(); ++i) {
      if (i != 0) text += ", ";
      text += FormatValue(value[i]);
    }
    return text + ')';
  }
  if (value.is_object()) {
    if (value.contains("min"))
      return FormatValue(value["min"]) + " .. " + FormatValue(value["max"]);
    std::string text = value.contains("name") ? FormatValue(value["name"]) : "gone";
    if (value.contains("uvwMapping")) text += " by uvw " + FormatValue(value["uvwMapping"]);
    return text;
  }
  return value.dump();
}

std::string FormatRecord(NRecord const& record) {
  std::string line = record["kind"].get<std::string>() + ' ' + FormatValue(record["name"]);
  if (record.contains("id")) line += ' ' + record["id"].get<std::string>();
  for (auto const& [key, value] : record.items()) {
    static std::set<std::string> const others{"kind",       "name",    "id",
                                              "attributes", "isAdded", "itemsBelow"};
    if (others.count(key) == 0) AppendField(line, key, value);
  }
  if (record.contains("itemsBelow")) {
    line += ", " + Plural(record["itemsBelow"].get<std::size_t>(), "item", "items") + " below";
  }
  if (record.contains("isAdded")) line += ", added by corvanta";
  return line;
}

void RemoveIds(NRecord& record) {
  if (record.is_object()) record.erase("id");
  for (auto& part : record) {
    if (part.is_structured()) RemoveIds(part);
  }
}

}  // namespace corvanta::app
