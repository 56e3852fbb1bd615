#include "corvanta/renderer/NRenderer.h"

#include <array>
#include <cmath>
#include <exception>
#include <optional>
#include <utility>

#include "corvanta/renderer/gl/NContextScope.h"
#include "corvanta/renderer/pass/NBackgroundPass.h"
#include "corvanta/renderer/pass/NFloorPass.h"
#include "corvanta/renderer/pass/NGlowPass.h"
#include "corvanta/renderer/pass/NNumberPass.h"
#include "corvanta/renderer/pass/NOcclusionPass.h"
#include "corvanta/renderer/pass/NShadowPass.h"
#include "corvanta/renderer/pass/draw_models.h"
#include "corvanta/renderer/scene/NChangeListener.h"
#include "corvanta/renderer/scene/NResolvedScene.h"

namespace corvanta::renderer {

namespace {

using data::domain::environment::NEnvironmentNode;
using data::domain::scene::NSceneNode;

/// Units: pixels from the lower left corner.
std::array<GLint, 4> GetRectangle(NTarget const& target, NViewport const& viewport) {
  return {static_cast<GLint>(viewport.left),
          static_cast<GLint>(target.GetHeight() - viewport.top - viewport.height),
          static_cast<GLint>(viewport.width), static_cast<GLint>(viewport.height)};
}

/// Makes all that is drawn fall into a part of the target, which is cleared.
void BeginPart(std::array<GLint, 4> const& rectangle, NColor const& color) {
  auto const [left, bottom, width, height] = rectangle;
  glViewport(left, bottom, width, height);
  glScissor(left, bottom, width, height);
  glEnable(GL_SCISSOR_TEST);
  glEnable(GL_DEPTH_TEST);
  glDepthMask(GL_TRUE);
  // The first of two models in one place is seen, as it is picked.
  glDepthFunc(GL_GREATER);
  glDisable(GL_BLEND);
  glDisable(GL_STENCIL_TEST);
  glStencilMask(0xFF);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  // No light above white.
  glClearColor(color[0], color[1], color[2], 0.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

/// What light is measured up to.
constexpr float kBrightest = 64;
// What the middle of a picture is exposed to: E. Reinhard et al., Photographic tone reproduction
// for digital images, 2002.
constexpr double kMiddleGrey = 0.18;

/// Exposes the picture by what it would show; nothing of that is known without a `brightness`.
void SetAutoExposure(NPicture& picture, NEnvironmentNode const& environment,
                     std::optional<double> brightness) {
  if (!brightness) return;
  double const factor = kMiddleGrey / *brightness * std::exp2(environment.GetRelativeExposure());
  if (std::isfinite(factor)) {
    picture.exposure.factor = picture.viewpoint.exposure * static_cast<float>(factor);
  }
}

}  // namespace

struct NRenderer::Block {
  Block(NContext const& drawingContext, data::events::NEventMultiplexer& multiplexer)
      : context(drawingContext),
        events(&multiplexer),
        shadowPass(flatProgram),
        numberPass(flatProgram) {
    events->AddObserver(*listener);
  }
  ~Block() { events->RemoveObserver(*listener); }

  void DrawLayers(NPicture const& picture, NEnvironmentNode const* environment, GLuint frame,
                  std::array<GLint, 4> const& rectangle);
  /// The logarithmic mean of the light of what is covered, before exposure.
  /// Fails: none where nothing is.
  std::optional<double> MeasureBrightness(NPicture const& picture,
                                          NEnvironmentNode const& environment,
                                          NTarget const& target, NViewport const& viewport);

  NContext const& context;
  boost::intrusive_ptr<data::events::NEventMultiplexer> const events;
  boost::intrusive_ptr<NChangeListener> const listener{new NChangeListener};
  NFlatProgram const flatProgram;
  NBackgroundPass backgroundPass;
  NSurfacePrograms programs;
  NInstances instances;
  NFloorPass floorPass;
  NShadowPass const shadowPass;
  NNumberPass const numberPass;
  NGlowPass glowPass;
  std::optional<NOcclusionPass> occlusionPass;
  NResolvedScene scene;
  bool showsEdges = false, hasBackground = true;
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> tree;
};

NRenderer::NRenderer(NContext const& context, data::events::NEventMultiplexer& events) {
  NContextScope const scope(context);
  m_block = std::make_unique<Block>(context, events);
}

NRenderer::~NRenderer() {
  try {
    NContextScope const scope(m_block->context);
    m_block.reset();
  } catch (std::exception const&) {
    // Another context's objects have the same names: the objects end with their own context.
    m_block->events->RemoveObserver(*m_block->listener);
    static_cast<void>(m_block.release());
  }
}

void NRenderer::Update(NSceneNode const& scene) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  block.tree = scene.GetSceneGraph();
  if (!block.tree) {
    // What changes meanwhile stays flagged for the next tree.
    block.scene.Clear();
    return;
  }
  NDirtyFlags flags = block.listener->TakeDirtyFlags();
  try {
    if (!flags.changedSurfaces.empty()) block.floorPass.ForgetGeometry();
    block.scene.Update(*block.tree, flags);
  } catch (...) {
    // What was done of it by half is done again.
    block.scene.Clear();
    block.listener->PutBack(std::move(flags));
    throw;
  }
}

std::vector<NDrawItem> const& NRenderer::GetItems() const { return m_block->scene.GetItems(); }

VX_Math::Box3 NRenderer::GetBox() const { return m_block->scene.GetBox(); }

void NRenderer::Block::DrawLayers(NPicture const& picture, NEnvironmentNode const* environment,
                                  GLuint frame, std::array<GLint, 4> const& rectangle) {
  BeginPart(rectangle, picture.hasBackground ? picture.backgroundColor : NColor{});
  auto const blend = [&picture] {
    glBlendFuncSeparate(GL_ONE, GL_ONE_MINUS_SRC_ALPHA, picture.hasBackground ? GL_ZERO : GL_ONE,
                        GL_ONE_MINUS_SRC_ALPHA);
  };
  blend();
  NTextures& textures = scene.GetTextures();
  if (environment != nullptr && picture.hasBackground) {
    backgroundPass.Draw(picture, *environment, textures);
  }
  programs.Begin(picture);
  DrawOpaqueModels(programs, instances, picture);
  glDepthFunc(GL_GEQUAL);
  if (environment != nullptr) {
    auto const height =
        floorPass.Draw(programs, instances, *environment, scene.GetMeshes(), textures);
    if (height && environment->FloorShowsShadow()) shadowPass.Draw(instances, picture, *height);
  }
  if (picture.occlusion.isEnabled) {
    if (!occlusionPass) occlusionPass.emplace();
    occlusionPass->Draw(frame, rectangle, picture.viewpoint, picture.occlusion);
    blend();
  }
  DrawTransparentModels(programs, instances, picture);
  if (picture.glow > 0.0f || picture.star > 0.0f) {
    glowPass.Draw(frame, rectangle, picture.glow, picture.star);
    blend();
  }
  if (showsEdges) DrawEdges(flatProgram, instances, picture);
}

std::optional<double> NRenderer::Block::MeasureBrightness(NPicture const& picture,
                                                          NEnvironmentNode const& environment,
                                                          NTarget const& target,
                                                          NViewport const& viewport) {
  NPicture measured = picture;
  measured.exposure = {1.0f / kBrightest, 1.0f, 0.0f, picture.exposure.diffuse};
  measured.glow = measured.star = 0.0f;
  measured.hasBackground = false;
  DrawLayers(measured, &environment, target.GetFrame(), GetRectangle(target, viewport));
  double sum = 0;
  std::size_t count = 0;
  target.ReadLight([&](unsigned y, std::vector<float> const& light) {
    if (y < viewport.top || y >= viewport.top + viewport.height) return;
    std::size_t const end = std::size_t{4} * (viewport.left + viewport.width);
    for (std::size_t i = std::size_t{4} * viewport.left; i < end; i += 4) {
      if (light[i + 3] < 0.5f) continue;
      float const luminance = 0.2126f * light[i] + 0.7152f * light[i + 1] + 0.0722f * light[i + 2];
      sum += std::log(1e-4 + static_cast<double>(luminance * kBrightest));
      ++count;
    }
  });
  target.Bind();
  if (count == 0) return std::nullopt;
  return std::exp(sum / static_cast<double>(count));
}

void NRenderer::DrawPicture(NSceneNode const& scene, NViewpoint const& viewpoint,
                            NTarget const& target, NViewport const& viewport) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  Update(scene);
  target.Bind();
  auto const environment = scene.GetEnvironment();
  NPicture picture = MakePicture(block.scene, viewpoint, environment.get());
  picture.hasBackground = block.hasBackground;
  if (environment) {
    if (environment->AutoExposureIsEnabled()) {
      auto const brightness = block.MeasureBrightness(picture, *environment, target, viewport);
      SetAutoExposure(picture, *environment, brightness);
    }
    LimitGlow(picture, block.scene.GetTextures(), *environment);
  }
  block.DrawLayers(picture, environment.get(), target.GetFrame(), GetRectangle(target, viewport));
}

void NRenderer::DrawNumbers(NSceneNode const& scene, NViewpoint const& viewpoint,
                            NTarget const& target, NViewport const& viewport) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  Update(scene);
  target.Bind();
  BeginPart(GetRectangle(target, viewport), NColor{});
  block.numberPass.Draw(block.instances, block.scene, viewpoint);
}

void NRenderer::SetShowsEdgesFlag(bool showsEdges) { m_block->showsEdges = showsEdges; }

void NRenderer::SetHasBackgroundFlag(bool hasBackground) { m_block->hasBackground = hasBackground; }

void NRenderer::Finish() const {
  NContextScope const scope(m_block->context);
  glFinish();
}

NUploads NRenderer::GetUploads() const { return m_block->scene.GetUploads(); }

std::vector<boost::intrusive_ptr<data::domain::image::NImageNode const>>
NRenderer::GetBrokenImages() const {
  return m_block->scene.GetTextures().GetBroken();
}

}  // namespace corvanta::renderer
