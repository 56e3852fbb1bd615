#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/commands/size.h"
#include "app/output/NWholeFile.h"
#include "app/output/picture_file.h"
#include "app/output/record.h"
#include "app/output/text.h"
#include "app/scene/NStage.h"
#include "app/scene/NStagePreview.h"
#include "app/scene/common_tree.h"
#include "app/scene/float_range.h"
#include "app/scene/hit_marks.h"
#include "app/scene/missing.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"
#include "corvanta/data/operators/ray_picker/pick.h"
#include "corvanta/renderer/NRenderError.h"

namespace corvanta::app {

namespace {

using core::text::ToNarrow;
using data::operators::ray_picker::NRayPicker;
using VX_Math::Vec3;

constexpr char kFooter[] = R"(
One of --at, --ray and --grid is needed. The view of --at and --grid is that of
a camera that shows the whole scene, as render draws it. A hit is a line,
nearest first: the names of the references and of the item, the distance from
the camera or from the ray's origin, and the point in global coordinates. With
--from-plane the point where the ray meets the plane comes last. A ray that hits
nothing is no error. --grid prints how many rays hit, and what they cost. -o
marks the first hit by a red ball, the others by yellow ones. With -o - all else
is printed on stderr.

  corvanta pick model.glb --at 400,300
  corvanta pick model.glb --ray 0,0,10,0,0,-1 -o hits.png)";

struct Options {
  std::vector<std::string> files;
  std::vector<double> at;
  std::string size = "800x600";
  std::string output;
  std::vector<double> ray, area, plane;
  unsigned grid = 0;
  bool asJson = false;
};

Vec3 ToVec3(std::vector<double> const& numbers, std::size_t from = 0) {
  return {static_cast<float>(numbers[from]), static_cast<float>(numbers[from + 1]),
          static_cast<float>(numbers[from + 2])};
}

class Pick {
 public:
  explicit Pick(Options const& options) : m_options(options), m_size(*ParseSize(options.size)) {}

  int Run() {
    if (!CanWrite(m_options.output)) return NS_FILE;
    std::vector<boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode>> trees;
    for (std::string const& file : m_options.files) {
      if (auto const model = OpenModel(m_document, file)) trees.push_back(model->tree);
    }
    if (!trees.empty()) {
      NStage stage(m_document, CreateCommonTree(m_document, trees));
      NOverview const& overview = stage.GetOverview();
      if (m_options.grid != 0) {
        ShootGrid(overview);
      } else {
        ShootOne(overview);
      }
      if (!m_options.output.empty() && !Draw(stage)) return NS_FILE;
    }
    return trees.size() == m_options.files.size() ? NS_DONE : NS_FILE;
  }

 private:
  double GetAspect() const { return static_cast<double>(m_size[0]) / m_size[1]; }

  void SetModes(NRayPicker& picker) const {
    if (!m_options.area.empty()) {
      VX_Math::Box3 area;
      area.ExtendBy(ToVec3(m_options.area));
      area.ExtendBy(ToVec3(m_options.area, 3));
      picker.SetSpace(area);
      picker.SetPickInArea(true);
    }
    if (!m_options.plane.empty()) {
      picker.SetPlane(VX_Math::Plane(ToVec3(m_options.plane), m_options.plane[3]));
      picker.SetPickFromPlane(true);
    }
  }

  static bool Find(NOverview const& overview, NRayPicker& picker) {
    overview.GetScene().Accept(picker);
    picker.SortWithDistance();
    picker.CheckDetail();
    return picker.GetPickCount() != 0;
  }

  /// False if that isn't possible.
  bool Draw(NStage& stage) {
    Vec3 const from = m_options.ray.empty() ? Vec3() : ToVec3(m_options.ray);
    MarkHits(m_document, stage, m_points, m_options.ray.empty() ? nullptr : &from);
    try {
      NStagePreview preview(m_document, stage, m_size[0], m_size[1]);
      WritePicture(m_options.output, preview.TakePicture());
      PrintBrokenPictures(preview);
      return true;
    } catch (renderer::NRenderError const& error) {
      PrintError("render", error.what());
    } catch (std::exception const& error) {
      PrintError(m_options.output, error.what());
    }
    return false;
  }

  void ShootOne(NOverview const& overview) {
    NRayPicker picker;
    Vec3 from;
    if (m_options.ray.empty()) {
      VX_Math::Vec2 const point(static_cast<float>((m_options.at[0] + 0.5) / m_size[0]),
                                static_cast<float>(1 - (m_options.at[1] + 0.5) / m_size[1]));
      picker.SetRay(point, overview.GetViewProjection(GetAspect()));
      from = overview.GetEye();
    } else {
      from = ToVec3(m_options.ray);
      picker.SetRay(VX_Math::Line(from, from + ToVec3(m_options.ray, 3)));
    }
    SetModes(picker);
    bool const isHit = Find(overview, picker);
    NRecord hits = NRecord::array();
    for (unsigned long i = 0; i != picker.GetPickCount(); ++i) {
      Vec3 const point = picker.GetAbsHitPoint(i);
      m_points.push_back(point);
      hits.push_back({{"path", GetPathText(picker, i)},
                      {"distance", (point - from).Length()},
                      {"point", {point.x, point.y, point.z}}});
    }
    Print(hits, isHit && !m_options.plane.empty() ? &picker.GetPlaneHit() : nullptr);
  }

  void Print(NRecord const& hits, Vec3 const* planeHit) const {
    std::ostream& out = NWholeFile::IsStdout(m_options.output) ? std::cerr : std::cout;
    NRecord record{{"hits", hits}};
    if (planeHit != nullptr) record["plane"] = {planeHit->x, planeHit->y, planeHit->z};
    if (m_options.asJson) {
      out << record.dump(2) << '\n';
      return;
    }
    if (hits.empty()) out << "no hit\n";
    for (NRecord const& hit : hits) {
      out << hit["path"].get<std::string>() << "  distance "
          << NumberText(hit["distance"].get<float>()) << "  at " << PointText(hit["point"]) << '\n';
    }
    if (planeHit != nullptr) out << "plane  at " << PointText(record["plane"]) << '\n';
  }

  static std::string PointText(NRecord const& point) {
    return NumberText(point[0].get<float>()) + ' ' + NumberText(point[1].get<float>()) + ' ' +
           NumberText(point[2].get<float>());
  }

  /// The names of the references and of the item, with slashes between.
  static std::string GetPathText(NRayPicker& picker, unsigned long index) {
    auto const path = picker.GetItemPath(index);
    std::string text;
    for (auto const& point : path.GetCheckPoints()) {
      if (auto const reference = point.Get()) text += ToNarrow(reference->GetName()) + '/';
    }
    return OneLine(text + ToNarrow(picker.GetModelNode(index)->GetName()));
  }

  void ShootGrid(NOverview const& overview) const {
    auto const viewProjection = overview.GetViewProjection(GetAspect());
    unsigned const side = m_options.grid;
    std::size_t hitCount = 0, rayHits = 0;
    auto const start = std::chrono::steady_clock::now();
    for (unsigned y = 0; y != side; ++y) {
      for (unsigned x = 0; x != side; ++x) {
        NRayPicker picker;
        picker.SetRay({(static_cast<float>(x) + 0.5f) / static_cast<float>(side),
                       (static_cast<float>(y) + 0.5f) / static_cast<float>(side)},
                      viewProjection);
        SetModes(picker);
        if (!Find(overview, picker)) continue;
        ++rayHits;
        hitCount += picker.GetPickCount();
      }
    }
    std::chrono::duration<double> const time = std::chrono::steady_clock::now() - start;
    double build = 0;
    for (auto at = m_document.GetGeometries().GetTypedNodeBegin();
         at != m_document.GetGeometries().GetTypedNodeEnd(); ++at) {
      build += data::operators::ray_picker::GetIndexStatistics(*at).buildSeconds;
    }
    double const rays = static_cast<double>(side) * side;
    NRecord const record{{"rays", rays},
                         {"raysThatHit", rayHits},
                         {"hits", hitCount},
                         {"raysPerSecond", std::round(rays / std::max(time.count() - build, 1e-9))},
                         {"indexMilliseconds", build * 1e3}};
    if (m_options.asJson) {
      std::cout << record.dump(2) << '\n';
    } else {
      std::cout << Plural(std::size_t{side} * side, "ray", "rays") << ", "
                << Plural(rayHits, "of them hits", "of them hit") << ", "
                << Plural(hitCount, "hit", "hits") << '\n'
                << NumberText(record["raysPerSecond"].get<double>()) << " rays a second, index in "
                << NumberText(static_cast<float>(build * 1e3)) << " ms\n";
    }
  }

  Options const& m_options;
  std::array<unsigned, 2> const m_size;
  data::document::NDocument m_document;
  std::vector<Vec3> m_points;  // that were hit
};

/// What the options can't be together or at all; empty if they can be.
std::string FindFault(Options const& options) {
  int const ways = !options.at.empty() + !options.ray.empty() + (options.grid != 0);
  if (ways != 1) return "one of --at, --ray and --grid is needed";
  for (auto const* const numbers : {&options.at, &options.ray, &options.area, &options.plane}) {
    for (double const number : *numbers) {
      if (!IsInFloatRange(number)) return "numbers must be such as a float can hold";
    }
  }
  if (!options.at.empty()) {
    auto const [width, height] = *ParseSize(options.size);
    double const x = options.at[0], y = options.at[1];
    // A pixel reaches from its number to the next one.
    if (!(x >= 0 && y >= 0 && x < width && y < height)) {
      return "--at is outside the view, which is " + options.size + " pixels";
    }
  }
  if (!options.ray.empty() && ToVec3(options.ray, 3) == Vec3()) return "the ray has no direction";
  if (!options.plane.empty() && ToVec3(options.plane) == Vec3()) return "the plane has no normal";
  if (!options.output.empty()) {
    if (options.grid != 0) return "-o and --grid exclude each other";
    if (auto const fault = FindPictureFault(options.output); !fault.empty()) {
      return "-o " + options.output + ": " + fault;
    }
    if (std::string const fault = CheckDrawnSize(options.size); !fault.empty()) {
      return "--size " + fault;
    }
  }
  if (!options.area.empty() && !options.plane.empty()) {
    return "--area and --from-plane exclude each other";
  }
  return {};
}

}  // namespace

void AddPick(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command =
      program.add_subcommand("pick", "Find what is under a pixel or along a ray.");
  command->add_option("FILE", options->files, "Model files")->required();
  command
      ->add_option("--at", options->at, "Pick at a pixel of the view, counted from the upper left")
      ->delimiter(',')
      ->expected(2)
      ->option_text("X,Y");
  command
      ->add_option("--size", options->size,
                   "Width and height of the view in pixels; 800x600 without it")
      ->check(CLI::Validator(&CheckSize, ""))
      ->option_text("WxH");
  command->add_option("--ray", options->ray, "Pick along a ray from a point O in a direction D")
      ->delimiter(',')
      ->expected(6)
      ->option_text("OX,OY,OZ,DX,DY,DZ");
  command
      ->add_option("--grid", options->grid, "Pick at N x N points all over the view, up to 20000")
      ->check(CLI::Range(1u, 20000u))
      ->option_text("N");
  command->add_option("--area", options->area, "Only hits in the box between two points")
      ->delimiter(',')
      ->expected(6)
      ->option_text("X0,Y0,Z0,X1,Y1,Z1");
  command
      ->add_option("--from-plane", options->plane,
                   "Only hits behind the plane n . p = d, as if it cut the scene open")
      ->delimiter(',')
      ->expected(4)
      ->option_text("NX,NY,NZ,D");
  command
      ->add_option("-o,--output", options->output,
                   "Draw the scene with the hits: .png, .jpg, or - for stdout")
      ->option_text("PICTURE");
  command->add_flag("--json", options->asJson, "Print one JSON object");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([options, &status] {
    status = RunUnless(FindFault(*options), [&] { return Pick(*options).Run(); });
  });
}

}  // namespace corvanta::app
