#include <corvanta/names.h>
#include <corvanta/renderer/drawn_attributes.h>
#include <charconv>
#include <fstream>
#include <iostream>
#include <sstream>

// Makes docs/attributes.md from the attributes of a live object of every class, and from what the
// tables say of them. Compares it with FILE, or writes it there: corvanta_tests_attribute_page
// [--write] FILE
namespace {

using namespace corvanta;
using namespace corvanta::data;
using Description = core::attribute::NAttributeDescription;
using Host = boost::intrusive_ptr<core::attribute::NAttributeHost>;

constexpr std::string_view kIntroduction = R"(# The attributes of every class

Written by `tests/attribute_page`, which also compares this page with the attributes as they are.

An attribute is reached through its host by name, `QueryAttribute(L"color.r")`, or through the getter and setter
named here; where one is missing, by name alone. An enumeration is held as a `long`. No value is validated or clamped:
ranges are those in which a value has the meaning given here. A notified write to a node is an attribute change event;
a lamp reports to its light environment, a view to nobody. Most attributes do no more than that: they are for the
renderer, the importer or the caller of the library. Those that `corvanta::renderer` draws by are marked as drawn
(`renderer::IsDrawn` is the same in code); those of a light by way of the lamp that `ConvertToLightEnv` makes of it.

Units: angles are in degrees. Tree units are those in which the items of a tree are given; the "unit" of the tree is the
length of one in scene units, those in which the views, the cameras and the surroundings of a scene are given.
)";

constexpr std::string_view kKinds[] = {
#define CORVANTA_KIND(SPACE, CLASS) #CLASS,
#include "corvanta/data/domain/node_kinds.def"
};

/// What every item has first.
constexpr Description kItem[] = {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"
};

// Not in the tables, because writers don't save them.
constexpr Description kIsWired = {L"isWired",       "bool", "IsWired",
                                  "SetIsWiredFlag", "",     "Whether the model is drawn as lines"};
constexpr Description kLocator = {
    L"locator", "", "", "", "", "Never has a value; the node has GetImageLocator"};

struct Section {
  std::string_view name;
  Host host;
  std::vector<Description> rows;  // behind those of an item
};

/// The node kinds in the order of node_kinds.def, then the other hosts of attributes.
std::vector<Section> MakeSections(document::NDocument& document) {
  return {
      // clang-format off
      {"NLightEnvNode", document.GetLightEnvs().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/light_env/light_env_attributes.def"
      }},
      {"NTextureNode", document.GetTextures().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/texture/texture_attributes.def"
      }},
      {"NSoundNode", document.GetSounds().CreateNode(), {}},
      {"NSceneGraphTreeNode", document.GetTrees().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/scenegraph/tree/tree_attributes.def"
      }},
      {"NSceneGraphReferenceNode", document.GetItems().CreateNode<NSceneGraphReferenceNode>(), {}},
      {"NSceneGraphModelNode", document.GetItems().CreateNode<NSceneGraphModelNode>(), {
          kIsWired,
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/scenegraph/item/model_item_attributes.def"
      }},
      {"NSceneGraphLightNode", document.GetItems().CreateNode<NSceneGraphLightNode>(), {}},
      {"NSceneGraphGroupNode", document.GetItems().CreateNode<NSceneGraphGroupNode>(), {}},
      {"NSceneGraphCameraNode", document.GetItems().CreateNode<NSceneGraphCameraNode>(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/scenegraph/item/camera_item_attributes.def"
      }},
      {"NSceneNode", document.GetScenes().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/scene/scene_attributes.def"
      }},
      {"NProjectionNode", document.GetProjections().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/projection/projection_attributes.def"
      }},
      {"NMovieNode", document.GetMovies().CreateNode(), {}},
      {"NMaterialNode", document.GetMaterials().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/material/material_attributes.def"
      }},
      {"NLightNode", document.GetLights().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/light/light_attributes.def"
      }},
      {"NImageNode", document.GetImages().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/image/image_attributes.def"
          kLocator,
      }},
      {"NGeometryNode", document.GetGeometries().CreateNode(), {}},
      {"NEnvironmentNode", document.GetEnvironments().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/environment/environment_attributes.def"
      }},
      {"NCameraNode", document.GetCameras().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/camera/camera_attributes.def"
      }},
      {"NAnimationNode", document.GetAnimations().CreateNode(), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/animation/animation_attributes.def"
      }},
      {"NLamp", document.GetLightEnvs().CreateNode()->CreateLamp(L"lamp"), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/domain/light_env/lamp_attributes.def"
      }},
      {"NTimeLine", Host(new timeline::NTimeLine({})), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/timeline/timeline_attributes.def"
      }},
      {"NView", Host(new view::NView), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/view/view_attributes.def"
      }},
      {"NViewManager", Host(new view::NViewManager(nullptr)), {
#define CORVANTA_ROWS_DESCRIPTIONS
#include "corvanta/data/view/view_manager_attributes.def"
      }},
      // clang-format on
  };
}

std::string Narrow(std::wstring_view text) {
  std::string narrow;
  for (wchar_t const c : text) narrow += static_cast<char>(c);
  return narrow;
}

std::string WriteDefault(core::attribute::NAttribute const& attribute) {
  switch (attribute.GetKind()) {
    case core::variant::NVK_BOOL:
      return attribute.GetBool() ? "true" : "false";
    case core::variant::NVK_LONG:
      return std::to_string(attribute.GetLong());
    case core::variant::NVK_STRING:
      return '"' + Narrow(attribute.GetValue().GetString()) + '"';
    case core::variant::NVK_DOUBLE: {
      char digits[32];
      return {digits, std::to_chars(digits, digits + sizeof digits, attribute.GetDouble()).ptr};
    }
    default:
      return "";
  }
}

std::string WriteType(core::attribute::NAttribute const& attribute, std::string_view type) {
  switch (attribute.GetKind()) {
    case core::variant::NVK_BOOL:
      return "bool";
    case core::variant::NVK_LONG:
      return type == "long" ? "long" : "long, `" + std::string(type) + '`';
    case core::variant::NVK_STRING:
      return "string";
    case core::variant::NVK_DOUBLE:
      return "double";
    default:
      return "none";
  }
}

std::string WriteRow(core::attribute::NAttributeHost const& host,
                     core::attribute::NAttribute const& attribute, Description const& row) {
  std::string line = "| `" + Narrow(row.name) + "` | " + WriteType(attribute, row.type) + " | ";
  line += WriteDefault(attribute) + " | " + row.unit + " | " + row.meaning;
  line += attribute.GetFlag() ? " | " : "; not for saving | ";
  line += renderer::IsDrawn(host, attribute.GetName()) ? "yes | " : " | ";
  if (*row.getter) line += '`' + std::string(row.getter) + '`';
  if (*row.getter && *row.setter) line += ", ";
  if (*row.setter) line += '`' + std::string(row.setter) + '`';
  return line + " |\n";
}

/// A line for each attribute of `section`, those of every item first if it is one.
/// Fails: throws std::runtime_error if the tables and the attributes don't agree.
std::vector<std::string> WriteRows(Section const& section, bool isItem) {
  std::vector<Description> rows;
  if (isItem) rows.assign(std::begin(kItem), std::end(kItem));
  rows.insert(rows.end(), section.rows.begin(), section.rows.end());
  std::vector<std::string> lines;
  auto const& host = *section.host;
  for (auto i = host.GetAttributeBegin(); i != host.GetAttributeEnd(); ++i) {
    if (lines.size() == rows.size() || i->GetName() != rows[lines.size()].name) {
      throw std::runtime_error("no row for " + Narrow(i->GetName()));
    }
    lines.push_back(WriteRow(host, *i, rows[lines.size()]));
  }
  if (lines.size() != rows.size()) throw std::runtime_error("no " + Narrow(rows.back().name));
  return lines;
}

void WriteTable(std::ostream& page, std::string_view name, std::string_view inherited,
                std::vector<std::string> const& lines) {
  page << "\n## " << name << "\n\n" << inherited;
  if (lines.empty()) return;
  page << (inherited.empty() ? "" : "\n")
       << "| attribute | type | default | unit | meaning | drawn | getter, setter |\n"
          "|---|---|---|---|---|---|---|\n";
  for (std::string const& line : lines) page << line;
}

std::string MakePage() {
  document::NDocument document;
  std::ostringstream page;
  page << kIntroduction;
  std::vector<std::string> ofItems;
  auto const sections = MakeSections(document);
  for (std::size_t i = 0; i != sections.size(); ++i) {
    std::string_view const name = sections[i].name;
    if (i < std::size(kKinds) && name != kKinds[i]) {
      throw std::runtime_error("no section of " + std::string(kKinds[i]));
    }
    bool const isItem = dynamic_cast<NSceneGraphItemNode*>(sections[i].host.get()) != nullptr;
    auto lines = WriteRows(sections[i], isItem);
    if (isItem) {
      auto const own = lines.begin() + std::size(kItem);
      if (ofItems.empty()) {
        ofItems.assign(lines.begin(), own);
        WriteTable(page, "NSceneGraphItemNode", "Every item of a scene graph:\n", ofItems);
      }
      if (!std::equal(lines.begin(), own, ofItems.begin())) {
        throw std::runtime_error("an item unlike the others: " + std::string(name));
      }
      lines.erase(lines.begin(), own);
    }
    char const* const inherited =
        isItem          ? lines.empty() ? "Those of every item.\n" : "Behind those of every item:\n"
        : lines.empty() ? "None.\n"
                        : "";
    WriteTable(page, name, inherited, lines);
  }
  return page.str();
}

/// Fails: false, and tells where, if the file at `path` isn't `page`.
bool Compare(char const* path, std::string const& page) {
  std::ifstream file(path, std::ios::binary);
  std::istringstream live(page);
  std::string present, expected;
  for (int line = 1;; ++line) {
    bool const isPresent = !!std::getline(file, present);
    bool const isExpected = !!std::getline(live, expected);
    if (!isPresent && !isExpected) return true;
    if (isPresent && isExpected && present == expected) continue;
    std::cerr << path << ':' << line << ": the attributes have changed, or the page:\n  page: "
              << (isPresent ? present : "(its end)")
              << "\n  live: " << (isExpected ? expected : "(the end)") << '\n';
    return false;
  }
}

}  // namespace

int main(int count, char** arguments) {
  bool const writes = count == 3 && std::string_view(arguments[1]) == "--write";
  if (count != 2 && !writes) {
    std::cerr << "corvanta_tests_attribute_page [--write] FILE\n";
    return 2;
  }
  char const* const path = arguments[count - 1];
  try {
    std::string const page = MakePage();
    if (!writes) {
      if (Compare(path, page)) return 0;
      std::cerr << "To write it again: " << arguments[0] << " --write " << path << '\n';
      return 1;
    }
    std::ofstream(path, std::ios::binary) << page << std::flush;
    return Compare(path, page) ? 0 : 1;
  } catch (std::exception const& error) {
    std::cerr << "The tables and the attributes don't agree: " << error.what() << '\n';
    return 1;
  }
}
