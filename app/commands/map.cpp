#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/output/NObjWriter.h"
#include "app/output/NWholeFile.h"
#include "app/output/record.h"
#include "app/output/text.h"
#include "app/scene/NStage.h"
#include "app/scene/float_range.h"
#include "app/scene/walk.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/map_surface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

namespace corvanta::app {

namespace {

namespace projection = data::domain::projection;
namespace texture_mapping = data::domain::material::texture_mapping;
using core::text::ToNarrow;
using data::domain::geometry::NSurface;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using projection::NProjectionNode;
using texture_mapping::NProjectionMapping;
using Numbers = std::vector<double>;

constexpr char kFooter[] = R"(
The projector is a unit box at the origin of the global space, which is scaled,
turned about x, y and z, and moved. A model is a line: its vertices before and
after the cut at the seam of a cylinder or a sphere, and the ranges of u and v.
With -o - all else is printed on stderr.

  corvanta map model.glb --method sphere --scale 2 -o mapped.obj)";

struct Options {
  std::string file, method, flip, output;
  std::string translate = "0,0,0", rotate = "0,0,0", scale = "1", repeat = "1", offset = "0";
  bool asJson = false;
};

/// Numbers that floats can hold, with commas between, one for each axis; one alone counts for all.
/// Fails: an empty list for anything else.
Numbers ParseNumbers(std::string const& text) {
  Numbers numbers;
  char const* at = text.data();
  char const* const end = at + text.size();
  for (;;) {
    auto const [next, fault] = std::from_chars(at, end, numbers.emplace_back());
    if (fault != std::errc() || !IsInFloatRange(numbers.back())) return {};
    if (next == end) break;
    if (*next != ',') return {};
    at = next + 1;
  }
  if (numbers.size() == 1) numbers.resize(3, numbers.front());
  return numbers;
}

/// The least and the largest of the values that are finite.
struct Range {
  float least = std::numeric_limits<float>::infinity();
  float largest = -std::numeric_limits<float>::infinity();

  void Add(float value) {
    if (!std::isfinite(value)) return;
    least = std::min(least, value);
    largest = std::max(largest, value);
  }
  NRecord Describe() const { return least <= largest ? NRecord{least, largest} : NRecord(nullptr); }
};

std::string RangeText(NRecord const& range) {
  if (range.is_null()) return "none";
  return NumberText(range[0].get<float>()) + " to " + NumberText(range[1].get<float>());
}

class Map {
 public:
  explicit Map(Options const& options) : m_options(options) {}

  int Run() {
    if (!CanWrite(m_options.output)) return NS_FILE;
    auto const model = OpenModel(m_document, m_options.file);
    if (!model) return NS_FILE;
    m_tree = model->tree;
    NStage const stage(m_document, m_tree);
    AddModels(*CreateProjection());
    try {
      Print(m_options.output.empty() ? MapModels(nullptr) : WriteModels());
    } catch (std::runtime_error const& error) {
      PrintError(m_options.output, error.what());
      return NS_FILE;
    }
    return NS_DONE;
  }

 private:
  using ModelPath = NProjectionMapping::ModelPath;

  boost::intrusive_ptr<NProjectionNode> CreateProjection() const {
    auto const node = m_document.GetProjections().CreateNode(core::node::NNodeID());
    node->SetProjectionMethod(core::text::ToWide(m_options.method));
    Numbers const translate = ParseNumbers(m_options.translate);
    node->SetTranslationX(translate[0]);
    node->SetTranslationY(translate[1]);
    node->SetTranslationZ(translate[2]);
    Numbers const rotate = ParseNumbers(m_options.rotate);
    node->SetRotationX(rotate[0]);
    node->SetRotationY(rotate[1]);
    node->SetRotationZ(rotate[2]);
    Numbers const scale = ParseNumbers(m_options.scale);
    node->SetScaleX(scale[0]);
    node->SetScaleY(scale[1]);
    node->SetScaleZ(scale[2]);
    Numbers const repeat = ParseNumbers(m_options.repeat);
    node->SetRepeatU(repeat[0]);
    node->SetRepeatV(repeat[1]);
    Numbers const offset = ParseNumbers(m_options.offset);
    node->SetOffsetU(offset[0]);
    node->SetOffsetV(offset[1]);
    auto const flips = [this](char axis) { return m_options.flip.find(axis) != std::string::npos; };
    node->QueryAttribute(projection::AN_FLIP_U)->SetValue(flips('u'), true);
    node->QueryAttribute(projection::AN_FLIP_V)->SetValue(flips('v'), true);
    return node;
  }

  void AddModels(NProjectionNode& node) {
    WalkTree(*m_tree, [&](NVisit const& visit) {
      auto const* const model = dynamic_cast<NSceneGraphModelNode const*>(&visit.item);
      if (model == nullptr) return;
      ModelPath const path(*model, *m_tree);
      node.AddModel(path);
      m_mapping->AddProjectionData(path, node);
      m_paths.push_back(path);
    });
  }

  NRecord MapModels(NObjWriter* writer) const {
    NRecord models = NRecord::array();
    for (auto const& path : m_paths) models.push_back(MapModel(path, writer));
    return models;
  }

  /// Fails: throws std::runtime_error if the file can't be written.
  NRecord WriteModels() const {
    NWholeFile file(m_options.output);
    file.GetStream() << "# Texture coordinates by a projection: " << m_options.method << '\n';
    NObjWriter writer(file.GetStream());
    NRecord models = MapModels(&writer);
    file.Commit();
    return models;
  }

  NRecord MapModel(ModelPath const& path, NObjWriter* writer) const {
    auto const model = path.GetNode();
    std::string const name = ToNarrow(model->GetName());
    std::size_t before = 0;
    std::size_t after = 0;
    Range u;
    Range v;
    auto const geometry = model->GetGeometryNode();
    if (writer != nullptr) writer->Begin(name);
    if (geometry) {
      for (auto const& surface : geometry->GetSurfaces()) {
        texture_mapping::NMappedCoords const mapped =
            texture_mapping::MapSurface(*m_mapping, path, *surface);
        before += surface->GetCoords().size();
        after += mapped.coords.size();
        for (auto const& c : mapped.coords) {
          u.Add(c.u);
          v.Add(c.v);
        }
        if (writer != nullptr) writer->Add(*surface, mapped, path.GetGlobalTransform());
      }
    }
    return {{"name", name},
            {"vertices", before},
            {"mappedVertices", after},
            {"u", u.Describe()},
            {"v", v.Describe()}};
  }

  void Print(NRecord const& models) const {
    std::ostream& out = NWholeFile::IsStdout(m_options.output) ? std::cerr : std::cout;
    if (m_options.asJson) {
      out << NRecord{{"method", m_options.method}, {"models", models}}.dump(2) << '\n';
      return;
    }
    if (models.empty()) out << "no models\n";
    for (NRecord const& model : models) {
      out << OneLine(model["name"].get<std::string>()) << "  vertices " << model["vertices"]
          << ", after the seam cut " << model["mappedVertices"] << "  u " << RangeText(model["u"])
          << "  v " << RangeText(model["v"]) << '\n';
    }
  }

  Options const& m_options;
  data::document::NDocument m_document;
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> m_tree;
  boost::intrusive_ptr<NProjectionMapping> const m_mapping{new NProjectionMapping};
  std::vector<ModelPath> m_paths;
};

std::string CheckSpace(std::string const& text) {
  return ParseNumbers(text).size() == 3 ? "" : "needs X,Y,Z, three numbers that floats can hold";
}

std::string CheckScale(std::string const& text) {
  Numbers const numbers = ParseNumbers(text);
  bool const isFlat = std::any_of(numbers.begin(), numbers.end(),
                                  [](double number) { return static_cast<float>(number) == 0; });
  return numbers.size() == 3 && !isFlat
             ? ""
             : "needs X,Y,Z or one number, such as floats can hold and none of them 0";
}

std::string CheckCoords(std::string const& text) {
  Numbers const numbers = ParseNumbers(text);
  return numbers.size() == 2 || numbers.size() == 3
             ? ""
             : "needs U,V or one number, such as floats can hold";
}

std::string CheckFlip(std::string const& text) {
  return text.find_first_not_of("uv,") == std::string::npos ? "" : "needs u, v or uv";
}

}  // namespace

void AddMap(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command =
      program.add_subcommand("map", "Give models texture coordinates by a projection.");
  command->add_option("FILE", options->file, "Model file")->required();
  command->add_option("--method", options->method, "How the texture is projected")
      ->required()
      ->check(CLI::IsMember({"plane", "cylinder", "sphere", "triplanar", "box"}))
      ->option_text("plane|cylinder|sphere|triplanar|box");
  CLI::Validator const space(&CheckSpace, "");
  CLI::Validator const coords(&CheckCoords, "");
  auto const add = [command](char const* name, std::string& value, char const* text,
                             char const* help) {
    return command->add_option(name, value, help)->option_text(text);
  };
  add("--translate", options->translate, "X,Y,Z", "Where the projector is; 0,0,0 without it")
      ->check(space);
  add("--rotate", options->rotate, "X,Y,Z", "Its angles in degrees; 0,0,0 without it")
      ->check(space);
  add("--scale", options->scale, "X,Y,Z", "Its size, or one number for all axes; 1 without it")
      ->check(CLI::Validator(&CheckScale, ""));
  add("--repeat", options->repeat, "U,V", "Factors on u and v, or one for both; 1 without it")
      ->check(coords);
  add("--offset", options->offset, "U,V", "What is added to u and v; 0 without it")->check(coords);
  add("--flip", options->flip, "u|v|uv", "Let u, v or both run the other way")
      ->check(CLI::Validator(&CheckFlip, ""));
  add("-o,--output", options->output, "OBJ",
      "Write the mapped models in global coordinates as an OBJ file, or to stdout for -");
  command->add_flag("--json", options->asJson, "Print one JSON object");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([options, &status] { status = Map(*options).Run(); });
}

}  // namespace corvanta::app
