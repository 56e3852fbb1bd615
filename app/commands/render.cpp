#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/size.h"
#include "app/import/import.h"
#include "app/output/NPixels.h"
#include "app/output/text.h"
#include "app/output/whole_file.h"
#include "app/render/NContext.h"
#include "app/render/NEye.h"
#include "app/render/NRenderError.h"
#include "app/render/NRenderer.h"
#include "app/render/NTarget.h"
#include "app/scene/NDocument.h"
#include "app/scene/NStage.h"
#include "app/scene/common_tree.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/domain/scenegraph/item/view_clip_distances.h"

namespace corvanta::app {

namespace {

constexpr char kFooter[] = R"(
Draws the scene of the files as a PNG file, through a camera that shows the whole
of it or one of the files' cameras. Nothing but OpenGL 3.3 is needed: no display,
no window.)";

struct Options {
  std::vector<std::string> files;
  std::string output, ids, camera;
  std::string size = "800x600";
};

class Render {
 public:
  explicit Render(Options const& options) : m_options(options), m_size(*ParseSize(options.size)) {}

  int Run() {
    std::vector<boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode>> trees;
    for (std::string const& file : m_options.files) {
      try {
        trees.push_back(ImportModel(m_document, file).tree);
      } catch (std::exception const& error) {
        PrintError(file, error.what());
      }
    }
    if (trees.empty()) return NS_FILE;
    NStage stage(m_document, CreateCommonTree(m_document, trees));
    if (!m_options.camera.empty()) {
      auto const camera = stage.FindCamera(core::text::ToWide(m_options.camera));
      if (!camera.GetNode()) {
        PrintError("--camera", "there is no camera \"" + m_options.camera + '"');
        return NS_OPTIONS;
      }
      stage.GetView().SetCamera(camera);
    }
    int const status = Draw(stage);
    return trees.size() == m_options.files.size() ? status : NS_FILE;
  }

 private:
  int Draw(NStage& stage) {
    try {
      NContext const context;
      NRenderer renderer(context, m_document.GetEvents());
      renderer.Update(stage.GetScene());
      VX_Math::Box3 const box = renderer.GetBox();
      stage.GetOverview().Frame(box);
      double const aspect = static_cast<double>(m_size[0]) / m_size[1];
      stage.GetOverview().FitAspect(aspect);
      NCameraPath const camera = stage.GetView().GetCamera();
      NEye const eye = GetEye(camera, aspect, GetClip(stage, box));
      NViewport const whole{0, 0, m_size[0], m_size[1]};
      if (!m_options.output.empty()) {
        NTarget const target(context.GetGl(), m_size[0], m_size[1], NTarget::NTK_PICTURE);
        renderer.DrawPicture(stage.GetScene(), eye, target, whole);
        if (!Write(m_options.output, target.ReadPicture())) return NS_FILE;
      }
      if (!m_options.ids.empty()) {
        NTarget const target(context.GetGl(), m_size[0], m_size[1], NTarget::NTK_NUMBERS);
        renderer.DrawNumbers(stage.GetScene(), eye, target, whole);
        if (!Write(m_options.ids, ToPixels(target.ReadNumbers()))) return NS_FILE;
        PrintItems(renderer.GetItems());
      }
      return NS_DONE;
    } catch (NRenderError const& error) {
      PrintError("render", error.what());
    }
    return NS_FILE;
  }

  /// That of the view; where vertices that aren't finite would spoil it, that of the others.
  static NClip GetClip(NStage const& stage, VX_Math::Box3 const& box) {
    namespace item = data::domain::scenegraph::item;
    NCameraPath const& camera = stage.GetView().GetCamera();
    auto const [near, far] = item::GetClipDistances(camera, stage.GetView());
    if (near > 0 && std::isfinite(far)) return {near, far};
    auto const [boxNear, boxFar] = item::GetClipDistances(camera, box);
    return {boxNear, boxFar};
  }

  NPixels ToPixels(std::vector<std::uint32_t> const& numbers) const {
    NPixels pixels(m_size[0], m_size[1]);
    unsigned char* to = pixels.GetRow(0);
    for (std::uint32_t const number : numbers) {
      *to++ = static_cast<unsigned char>(number >> 16);
      *to++ = static_cast<unsigned char>(number >> 8);
      *to++ = static_cast<unsigned char>(number);
    }
    return pixels;
  }

  static bool Write(std::string const& path, NPixels const& pixels) {
    if (WriteWholeFile(path, EncodePng(pixels))) return true;
    PrintError(path, "can't be written");
    return false;
  }

  static void PrintItems(std::vector<NDrawItem> const& items) {
    std::size_t number = 0;
    for (NDrawItem const& item : items) {
      std::string text;
      for (auto const& point : item.path.GetCheckPoints()) {
        if (auto const reference = point.Get()) {
          text += core::text::ToNarrow(reference->GetName()) + '/';
        }
      }
      std::cout << ++number << "  " << OneLine(text + core::text::ToNarrow(item.model->GetName()))
                << '\n';
    }
  }

  Options const& m_options;
  std::array<unsigned, 2> const m_size;
  NDocument m_document;
};

}  // namespace

void AddRender(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand("render", "Draw the scene of model files.");
  command->add_option("FILE", options->files, "Model files")->required();
  command->add_option("-o,--output", options->output, "PNG file of the picture");
  command->add_option("--ids", options->ids,
                      "PNG file whose pixels are the numbers of the models seen there");
  command->add_option("--size", options->size, "Size of the picture in pixels")
      ->check(CLI::Validator(&CheckDrawnSize, "WxH"));
  command->add_option("--camera", options->camera, "Name of a camera of the files");
  command->footer(kFooter);
  command->callback([options, &status] {
    if (options->output.empty() && options->ids.empty()) {
      PrintError("options", "one of -o and --ids is needed");
      status = NS_OPTIONS;
      return;
    }
    status = Render(*options).Run();
  });
}

}  // namespace corvanta::app
