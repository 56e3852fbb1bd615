#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/output/text.h"
#include "app/play/NPlayback.h"
#include "app/play/NTourPlayer.h"
#include "app/scene/NStage.h"
#include "app/scene/walk.h"
#include "app/watch/NEventPrinter.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/map_surface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/internal/internal_data.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"
#include "corvanta/data/switches/NMaterialSwitch.h"

namespace corvanta::app {

namespace {

namespace domain = data::domain;
namespace item = domain::scenegraph::item;
namespace texture_mapping = domain::material::texture_mapping;
using core::node::NNodeID;
using core::text::ToNarrow;
using VX_Math::Vec3;

constexpr char kFooter[] = R"(
A model file is read, or the sample that comes with the program; its scene is
set up to be seen, changed, picked, mapped, toured, lit and given other
materials.)";

/// Where the build and the installation put the sample.
std::string FindSample() {
  auto const program = std::filesystem::canonical("/proc/self/exe");
  return (program.parent_path().parent_path() / "share/corvanta/models/spot.obj").string();
}

std::string Text(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", number);
  return text;
}
std::string Text(Vec3 const& v) {
  return '(' + Text(v.x) + ", " + Text(v.y) + ", " + Text(v.z) + ')';
}
std::string Name(core::node::NNode const& node) { return Quoted(ToNarrow(node.GetName())); }

class Demo {
 public:
  using Clock = std::chrono::steady_clock;

  /// Requires: `model` is in `document`.
  Demo(data::document::NDocument& document, importer::NImportedModel const& model,
       Clock::time_point start)
      : m_start(start), m_document(document), m_model(model), m_stage(document, model.tree) {}

  void Run() {
    ShowImport();
    ShowPresets();
    WalkTree(*m_model.tree, [&](NVisit const& visit) {
      auto* const model = dynamic_cast<item::NSceneGraphModelNode*>(&visit.item);
      bool const isFirst = !m_shown && model != nullptr && model->GetGeometryNode();
      if (isFirst) m_shown = model;
    });
    if (m_shown) {
      ShowEvents();
      ShowPick();
      ShowProjection();
    }
    ShowPresentation();
    ShowLightEnvironment();
    if (m_shown) ShowSwitch();
    std::chrono::duration<double> const time = Clock::now() - m_start;
    Title("all") << "in " << Text(time.count()) << " s\n";
  }

 private:
  using ModelPath = texture_mapping::NProjectionMapping::ModelPath;

  static std::ostream& Title(char const* title) {
    return std::cout << title << std::string(14 - std::string(title).size(), ' ');
  }
  static std::ostream& NextLine() { return std::cout << std::string(14, ' '); }

  void ShowImport() {
    std::size_t vertices = 0, triangles = 0;
    auto const& geometries = m_document.GetGeometries();
    for (auto at = geometries.GetTypedNodeBegin(); at != geometries.GetTypedNodeEnd(); ++at) {
      for (auto const& surface : at->GetSurfaces()) {
        vertices += surface->GetCoords().size();
        triangles += surface->GetIndices().size() / 3;
      }
    }
    Title("import") << Name(*m_model.tree) << ": " << Plural(vertices, "vertex", "vertices") << ", "
                    << Plural(triangles, "triangle", "triangles") << ", read in "
                    << Text(m_model.readMilliseconds) << " ms, built in "
                    << Text(m_model.buildMilliseconds) << " ms\n";
    auto const box = GetBoundingBox(*m_model.tree);
    if (!box.IsEmpty()) NextLine() << "box " << Text(box.min) << " .. " << Text(box.max) << '\n';
  }

  void ShowPresets() {
    auto const& environment = m_stage.GetEnvironment();
    std::size_t builtIn = 0;
    auto const& manager = m_document.GetManager();
    for (auto at = manager.begin(); at != manager.end(); ++at) {
      auto const& found = at->second.domain;
      if (found->IsReadOnly()) builtIn += found->GetNodeCount();
    }
    Title("presets") << "camera at " << Text(m_stage.GetOverview().GetEye()) << ", "
                     << Plural(environment.GetLights().size(), "light", "lights") << ", a sphere "
                     << Text(environment.GetEnvironmentMapModel()->GetScaleX())
                     << " in radius about the scene\n";
    NextLine() << "built in: " << Plural(builtIn, "node", "nodes") << " in read-only domains\n";
  }

  void ShowEvents() {
    boost::intrusive_ptr<NEventPrinter> const printer(new NEventPrinter(std::cout, false));
    auto const before = GetBoundingBox(*m_model.tree).GetSize();
    m_document.GetEvents().AddObserver(*printer);
    printer->StartClock();
    Title("events");
    m_shown->SetRotationY(m_shown->GetRotationY() + 30);
    NextLine();
    m_shown->SetIsVisibleFlag(!m_shown->IsVisible());
    m_document.GetEvents().RemoveObserver(*printer);
    m_shown->SetIsVisibleFlag(!m_shown->IsVisible());
    NextLine() << "size of the whole " << Text(before) << " -> "
               << Text(GetBoundingBox(*m_model.tree).GetSize()) << '\n';
  }

  void ShowPick() {
    constexpr unsigned kSide = 64;
    auto const viewProjection = m_stage.GetOverview().GetViewProjection(1);
    Vec3 const eye = m_stage.GetOverview().GetEye();
    std::size_t hitRays = 0;
    std::string nearest = "nothing";
    float least = INFINITY;
    auto const start = Clock::now();
    for (unsigned i = 0; i != kSide * kSide; ++i) {
      data::operators::ray_picker::NRayPicker picker;
      picker.SetRay({(static_cast<float>(i % kSide) + 0.5f) / kSide,
                     (static_cast<float>(i / kSide) + 0.5f) / kSide},
                    viewProjection);
      m_stage.GetScene().Accept(picker);
      picker.SortWithDistance();
      picker.CheckDetail();
      if (picker.GetPickCount() == 0) continue;
      ++hitRays;
      Vec3 const point = picker.GetAbsHitPoint(0);
      float const distance = (point - eye).Length();
      if (distance >= least) continue;
      least = distance;
      nearest = Name(*picker.GetModelNode(0)) + " at " + Text(point) + ", " + Text(distance) +
                " from the camera";
    }
    std::chrono::duration<double> const time = Clock::now() - start;
    std::string const rays = Plural(kSide * kSide, "ray", "rays");
    Title("pick") << Plural(hitRays, ("of " + rays + " hits").c_str(),
                            ("of " + rays + " hit").c_str())
                  << ", " << Text(kSide * kSide / time.count()) << " rays a second\n";
    NextLine() << "nearest: " << nearest << '\n';
  }

  void ShowProjection() {
    auto const node = m_document.GetProjections().CreateNode(NNodeID());
    ModelPath const path(*m_shown, *m_model.tree);
    boost::intrusive_ptr<texture_mapping::NProjectionMapping> const mapping(
        new texture_mapping::NProjectionMapping);
    node->AddModel(path);
    mapping->AddProjectionData(path, *node);
    auto const& surface = **m_shown->GetGeometryNode()->GetSurfaces().begin();
    Title("projection");
    char const* gap = "";
    for (wchar_t const* const method : {L"plane", L"cylinder", L"sphere", L"triplanar", L"box"}) {
      node->SetProjectionMethod(method);
      std::cout << gap << ToNarrow(method) << ' '
                << texture_mapping::MapSurface(*mapping, path, surface).coords.size();
      gap = ", ";
    }
    std::cout << " texture coordinates for "
              << Plural(surface.GetCoords().size(), "vertex", "vertices") << '\n';
  }

  void ShowPresentation() {
    NTourPlayer player(m_stage, m_model, false, false);
    NPace pace;
    pace.seconds = 1;
    NPlayback playback(m_document, player, pace);
    std::size_t frames = 0, events = 0;
    std::vector<double> first, last;
    playback.Run([&](NFrame const& frame) {
      if (frames++ == 0) first = frame.values;
      events += frame.eventCount;
      last = frame.values;
      return true;
    });
    auto const eye = [](std::vector<double> const& values) {
      return Vec3(static_cast<float>(values[0]), static_cast<float>(values[1]),
                  static_cast<float>(values[2]));
    };
    Title("presentation") << Plural(frames, "frame", "frames") << " of a " << player.GetTitle()
                          << ", " << Plural(events, "event", "events") << '\n';
    NextLine() << "camera " << Text(eye(first)) << " -> " << Text(eye(last)) << '\n';
  }

  void ShowLightEnvironment() {
    for (auto const& reference : m_stage.GetEnvironment().GetLightEnvs()) {
      auto const lightEnv = reference.Get();
      Title("lights") << Name(*lightEnv) << ": "
                      << Plural(lightEnv->GetLamps().size(), "lamp", "lamps");
      double red = 0, green = 0, blue = 0;
      for (auto const& lamp : lightEnv->GetLamps()) {
        red += lamp->GetColorR();
        green += lamp->GetColorG();
        blue += lamp->GetColorB();
      }
      std::cout << ", together (" << Text(red) << ", " << Text(green) << ", " << Text(blue)
                << ")\n";
    }
  }

  void ShowSwitch() {
    auto const& manager = m_document.GetManager();
    boost::intrusive_ptr<data::switches::NMaterialSwitch> const paints(
        new data::switches::NMaterialSwitch);
    for (int i = 0; i != 4; ++i) {
      paints->AddMaterial(*data::internal::GetRGBMaterialNode(manager, i),
                          static_cast<unsigned>(i));
    }
    paints->AddModel(*m_shown);
    std::size_t usedCount = 0;
    for (auto const& paint : paints->GetMaterials()) {
      for (auto const& model : paints->GetModels()) model.Get()->SetMaterial(paint.Get());
    }
    for (auto const& paint : paints->GetMaterials()) usedCount += IsUsed(*paint.Get());
    Title("switch") << Name(*m_shown) << " went through "
                    << Plural(paints->GetMaterials().size(), "material", "materials") << "; "
                    << Plural(usedCount, "is", "are") << " in use, "
                    << Name(*m_shown->GetMaterialNode()) << '\n';
  }

  Clock::time_point const m_start;
  data::document::NDocument& m_document;
  importer::NImportedModel const& m_model;
  NStage m_stage;
  boost::intrusive_ptr<item::NSceneGraphModelNode> m_shown;  // the first model with a geometry
};

int Show(std::string file) {
  try {
    auto const start = Demo::Clock::now();
    if (file.empty()) file = FindSample();
    data::document::NDocument document;
    auto const model = OpenModel(document, file);
    if (!model) return NS_FILE;
    Demo(document, *model, start).Run();
  } catch (std::exception const& error) {
    PrintError(file, error.what());
    return NS_FILE;
  }
  return NS_DONE;
}

}  // namespace

void AddDemo(CLI::App& program, int& status) {
  auto const file = std::make_shared<std::string>();
  CLI::App* const command =
      program.add_subcommand("demo", "Show what the library does, in one run.");
  command->add_option("FILE", *file, "Model file; without it the sample");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([file, &status] { status = Show(*file); });
}

}  // namespace corvanta::app
