#include "corvanta/renderer/NRenderer.h"

#include <exception>

#include "corvanta/renderer/gl/NContextScope.h"
#include "corvanta/renderer/pass/NBackgroundPass.h"
#include "corvanta/renderer/pass/NFloorPass.h"
#include "corvanta/renderer/pass/NGlowPass.h"
#include "corvanta/renderer/pass/NNumberPass.h"
#include "corvanta/renderer/pass/NShadowPass.h"
#include "corvanta/renderer/pass/draw_models.h"
#include "corvanta/renderer/scene/NChangeListener.h"
#include "corvanta/renderer/scene/NResolvedScene.h"

namespace corvanta::renderer {

namespace {

using data::domain::scene::NSceneNode;

/// Units: pixels from the lower left corner.
std::array<GLint, 4> GetRectangle(NTarget const& target, NViewport const& viewport) {
  return {static_cast<GLint>(viewport.left),
          static_cast<GLint>(target.GetHeight() - viewport.top - viewport.height),
          static_cast<GLint>(viewport.width), static_cast<GLint>(viewport.height)};
}

/// Makes all that is drawn fall into a part of `target`, which is cleared.
void BeginPart(NTarget const& target, NViewport const& viewport, NColor const& color) {
  auto const [left, bottom, width, height] = GetRectangle(target, viewport);
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

  NContext const& context;
  boost::intrusive_ptr<data::events::NEventMultiplexer> const events;
  boost::intrusive_ptr<NChangeListener> const listener{new NChangeListener};
  NFlatProgram const flatProgram;
  NBackgroundPass const backgroundPass;
  NSurfacePrograms programs;
  NInstances instances;
  NFloorPass floorPass;
  NShadowPass const shadowPass;
  NNumberPass const numberPass;
  NGlowPass glowPass;
  NResolvedScene scene;
  bool showsEdges = false;
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
  NDirtyFlags const flags = block.listener->TakeDirtyFlags();
  if (!flags.changedSurfaces.empty()) block.floorPass.ForgetGeometry();
  block.scene.Update(*block.tree, flags);
}

std::vector<NDrawItem> const& NRenderer::GetItems() const { return m_block->scene.GetItems(); }

VX_Math::Box3 NRenderer::GetBox() const { return m_block->scene.GetBox(); }

void NRenderer::DrawPicture(NSceneNode const& scene, NViewpoint const& viewpoint,
                            NTarget const& target, NViewport const& viewport) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  Update(scene);
  target.Bind();
  auto const environment = scene.GetEnvironment();
  NPicture const picture = MakePicture(block.scene, viewpoint, environment.get());
  BeginPart(target, viewport, picture.backgroundColor);
  NTextures& textures = block.scene.GetTextures();
  if (environment) block.backgroundPass.Draw(picture, *environment, textures);
  block.programs.Begin(picture);
  DrawOpaqueModels(block.programs, block.instances, picture);
  glDepthFunc(GL_GEQUAL);
  if (environment) {
    auto const height = block.floorPass.Draw(block.programs, block.instances, *environment,
                                             block.scene.GetMeshes(), textures);
    if (height && environment->FloorShowsShadow()) {
      block.shadowPass.Draw(block.instances, picture, *height);
    }
  }
  DrawTransparentModels(block.programs, block.instances, picture);
  if (picture.glow > 0.0f) {
    block.glowPass.Draw(target.GetFrame(), GetRectangle(target, viewport), picture.glow);
  }
  if (block.showsEdges) DrawEdges(block.flatProgram, block.instances, picture);
}

void NRenderer::DrawNumbers(NSceneNode const& scene, NViewpoint const& viewpoint,
                            NTarget const& target, NViewport const& viewport) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  Update(scene);
  target.Bind();
  BeginPart(target, viewport, NColor{});
  block.numberPass.Draw(block.instances, block.scene, viewpoint);
}

void NRenderer::SetShowsEdgesFlag(bool showsEdges) { m_block->showsEdges = showsEdges; }

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
