#include "corvanta/renderer/NRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <optional>
#include <unordered_map>

#include "corvanta/renderer/NBillboard.h"
#include "corvanta/renderer/NChanges.h"
#include "corvanta/renderer/NDrawList.h"
#include "corvanta/renderer/NMeshes.h"
#include "corvanta/renderer/NShade.h"
#include "corvanta/renderer/NTextures.h"
#include "corvanta/renderer/floor.h"
#include "corvanta/renderer/gl/NContextScope.h"
#include "corvanta/renderer/gl/NFlatProgram.h"
#include "corvanta/renderer/gl/NSurfaceProgram.h"

namespace corvanta::renderer {

namespace {

namespace domain = data::domain;
using domain::environment::NEnvironmentNode;
using domain::material::NMaterialNode;
using domain::scene::NSceneNode;
using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Vec3;

// A picture that fills the view, for the program that draws the sky.
constexpr int kPictureSky = 3;
// Of the stencil, behind a bit for each lamp.
constexpr unsigned kFloorBit = 1u << kLampCount;

/// A model as it is drawn, beside its entry in the draw list.
struct Drawn {
  NShade const* shade = nullptr;
  std::vector<NMeshPart> parts;
};

/// What a picture is drawn with.
struct Pass {
  NEye const& eye;
  NLamps lamps;
  NExposure exposure;
  NSky sky;
  NColor color{}, ambientLight{};
};

struct KnownShade {
  core::node::NNodeReference<NMaterialNode const> material;
  NShade shade;
};

bool IsFinite(Box3 const& box) {
  Vec3 const size = box.max - box.min;
  return std::isfinite(size.x) && std::isfinite(size.y) && std::isfinite(size.z);
}

NExposure ReadExposure(NEnvironmentNode const& environment, NEye const& eye) {
  NExposure exposure;
  auto const factor = static_cast<float>(std::exp2(environment.GetHdrExposure()));
  auto const gamma = static_cast<float>(environment.GetHdrGamma());
  exposure.factor = eye.exposure * (std::isfinite(factor) ? factor : 1.0f);
  exposure.gamma = eye.gamma * (std::isfinite(gamma) && gamma > 0.0f ? gamma : 1.0f);
  if (environment.ToneMappingIsEnabled()) {
    exposure.white = std::max(static_cast<float>(environment.GetWhiteBrightness()), 1e-3f);
  }
  return exposure;
}

}  // namespace

struct NRenderer::Block {
  Block(NContext const& drawingContext, data::events::NEventMultiplexer& multiplexer)
      : context(drawingContext),
        events(&multiplexer),
        solidProgram(false),
        clearProgram(true),
        skyProgram(kSkyVertexShader, kSkyFragmentShader) {
    events->AddObserver(*changes);
    skyProgram.Use();
    glUniform1i(skyProgram.GetUniform("skyCube"), kCubeUnit);
    glUniform1i(skyProgram.GetUniform("skyFlat"), kFlatUnit);
  }
  ~Block() { events->RemoveObserver(*changes); }

  NShade const& GetShade(boost::intrusive_ptr<NMaterialNode> const& material) {
    if (!material) return plain;
    auto const [entry, isNew] = shades.try_emplace(material.get());
    if (isNew) entry->second = {*material, ReadShade(*material, textures)};
    return entry->second.shade;
  }

  void ForgetShades(NMarks const& marks) {
    std::erase_if(shades, [&marks](auto const& entry) {
      return marks.materials || marks.changedMaterials.contains(entry.first) ||
             !entry.second.material.Get();
    });
  }

  void Resolve(std::size_t index) {
    NDrawItem const& item = list.GetItems()[index];
    Drawn& drawn = all[index];
    drawn.shade = &GetShade(item.model->GetMaterialNode());
    drawn.parts.clear();
    if (auto const geometry = item.model->GetGeometryNode()) {
      drawn.parts = meshes.Get(item, *geometry, drawn.shade->mappings);
    }
  }

  void BeginView(NTarget const& target, NViewport const& viewport) const {
    auto const bottom = static_cast<GLint>(target.GetHeight() - viewport.top - viewport.height);
    auto const left = static_cast<GLint>(viewport.left);
    auto const width = static_cast<GLsizei>(viewport.width);
    auto const height = static_cast<GLsizei>(viewport.height);
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
  }

  void DrawParts(std::vector<NMeshPart> const& parts) const {
    for (NMeshPart const& part : parts) {
      if (part.count == 0) continue;
      glBindVertexArray(part.vertexArray);
      if (part.isIndexed) {
        glDrawElements(GL_TRIANGLES, part.count, GL_UNSIGNED_INT, nullptr);
      } else {
        glDrawArrays(GL_TRIANGLES, 0, part.count);
      }
    }
  }

  void DrawSky(Pass const& pass, NSky const& sky, NExposure const& exposure) const {
    if (sky.kind < 0) return;
    skyProgram.Use();
    // Where the camera stands is all the same to what is infinitely far.
    Matrix turn = pass.eye.view;
    for (int axis = 0; axis != 3; ++axis) turn(3, axis) = 0.0f;
    Matrix const fromView = (turn * pass.eye.projection).Inverse();
    glUniformMatrix4fv(skyProgram.GetUniform("fromView"), 1, GL_FALSE, fromView[0]);
    glUniform1i(skyProgram.GetUniform("isPerspective"), pass.eye.towards[3] != 0.0f);
    glUniform1i(skyProgram.GetUniform("skyKind"), sky.kind);
    SetTurn(skyProgram.GetUniform("skyTurn"), sky.turn);
    glUniform1f(skyProgram.GetUniform("exposure"), exposure.factor);
    glUniform1f(skyProgram.GetUniform("gamma"), exposure.gamma);
    glUniform1f(skyProgram.GetUniform("white"), exposure.white);
    BindSky(sky);
    glBindVertexArray(noVertices.Get());
    glDisable(GL_DEPTH_TEST);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glEnable(GL_DEPTH_TEST);
  }

  void DrawBackdrop(Pass const& pass, NEnvironmentNode const& environment) {
    if (auto const image = environment.Get2DImage()) {
      NSky picture;
      picture.kind = kPictureSky;
      picture.texture = textures.Get(*image, NTC_COLOR).texture.Get();
      NExposure own = pass.exposure;
      own.factor *= static_cast<float>(environment.GetImageExposure());
      own.gamma *= std::max(static_cast<float>(environment.GetImageGamma()), 1e-3f);
      DrawSky(pass, picture, own);
      return;
    }
    auto const model = environment.GetEnvironmentMapModel();
    if (!model || model->IsVisible()) DrawSky(pass, pass.sky, pass.exposure);
  }

  void DrawItem(NSurfaceProgram const& program, std::size_t index, Pass const& pass,
                NShade const*& shade) const {
    NDrawItem const& item = list.GetItems()[index];
    if (shade != all[index].shade) {
      shade = all[index].shade;
      program.SetShade(*shade, pass.ambientLight, pass.lamps, pass.sky);
    }
    if (auto const type = item.model->GetBillboardType(); type != 0) {
      Matrix const global = TurnBillboard(item.global, pass.eye, type);
      program.SetPlace(global, global.Inverse().Transpose());
    } else {
      program.SetPlace(item.global, item.normals);
    }
    bool const isWired = item.model->IsWired();
    if (isWired) program.SetWired(true);
    DrawParts(all[index].parts);
    if (isWired) program.SetWired(false);
  }

  /// How far ahead the middle of each model lies, and its number, sorted.
  std::vector<std::pair<float, std::size_t>> GetDepths(Pass const& pass,
                                                       bool areTransparent) const {
    std::vector<std::pair<float, std::size_t>> depths;
    for (std::size_t i = 0; i != all.size(); ++i) {
      NDrawItem const& item = list.GetItems()[i];
      if (!item.isPlaced || all[i].shade->isTransparent != areTransparent) continue;
      Vec3 center = item.model->GetBoundingBoxWithoutChildren().GetCenter();
      item.global.MultVecMatrix(center, center);
      pass.eye.view.MultVecMatrix(center, center);
      depths.emplace_back(std::isfinite(center.z) ? -center.z : 0.0f, i);
    }
    std::sort(depths.begin(), depths.end());
    return depths;
  }

  /// The nearest first, so that what is hidden needn't be lit.
  void DrawSolid(Pass const& pass) const {
    solidProgram.Begin(pass.eye, pass.lamps, pass.exposure);
    NShade const* shade = nullptr;
    for (auto const& [depth, index] : GetDepths(pass, false)) {
      DrawItem(solidProgram, index, pass, shade);
    }
  }

  /// The farthest first, so that each is seen through the next.
  void DrawTransparent(Pass const& pass) const {
    auto depths = GetDepths(pass, true);
    if (depths.empty()) return;
    std::reverse(depths.begin(), depths.end());
    clearProgram.Begin(pass.eye, pass.lamps, pass.exposure);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    NShade const* shade = nullptr;
    for (auto const& [depth, index] : depths) DrawItem(clearProgram, index, pass, shade);
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
  }

  /// Where the floor of an environment lies; it is made for what bears the surroundings.
  /// Fails: none where that isn't finite.
  static std::optional<Matrix> GetFloorPlace(NEnvironmentNode const& environment) {
    Matrix place, height;
    if (auto const model = environment.GetEnvironmentMapModel()) {
      model->GetTransform().GetScale(place);
    }
    height.SetTranslate(Vec3(0.0f, static_cast<float>(environment.GetFloorHeight()), 0.0f));
    place *= height;
    bool const isFinite = std::isfinite(place(0, 0) + place(1, 1) + place(2, 2) + place(3, 1));
    return isFinite ? std::optional(place) : std::nullopt;
  }

  void DrawFloor(Pass const& pass, NEnvironmentNode const& environment) {
    auto const geometry = environment.GetFloorGeometry();
    auto const place = GetFloorPlace(environment);
    if (!environment.FloorIsVisible() || !geometry || !place) return;
    std::vector<std::uint64_t> surfaces;
    for (auto const& surface : geometry->GetSurfaces()) {
      surfaces.push_back(surface->GetCreationNumber());
    }
    if (!floor || floorSurfaces != surfaces) {
      floor = LayFloor(*geometry);
      floorSurfaces = surfaces;
    }
    NShade const shade = ReadFloorShade(environment, textures);
    NSurfaceProgram const& program = shade.isTransparent ? clearProgram : solidProgram;
    program.Begin(pass.eye, pass.lamps, pass.exposure);
    program.SetShade(shade, pass.ambientLight, pass.lamps, pass.sky);
    program.SetPlace(*place, place->Inverse().Transpose());
    if (shade.isTransparent) glEnable(GL_BLEND);
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(GL_ALWAYS, kFloorBit, kFloorBit);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    DrawParts(meshes.Get(NDrawItem(), *floor, shade.mappings));
    if (environment.FloorShowsShadow()) DrawShadows(pass, (*place)(3, 1));
    glDisable(GL_STENCIL_TEST);
    glStencilMask(0xFF);
    glDisable(GL_BLEND);
  }

  /// The models flattened onto a floor that was drawn just now, for each lamp that makes shadows. A
  /// bit of the stencil for each keeps a shadow from falling twice on one place.
  void DrawShadows(Pass const& pass, float height) const {
    flatProgram.Begin(pass.eye);
    glEnable(GL_BLEND);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(2.0f, 2.0f);
    glDepthMask(GL_FALSE);
    glStencilOp(GL_KEEP, GL_KEEP, GL_INVERT);
    for (unsigned lamp = 0; lamp != kLampCount; ++lamp) {
      float const darkness = pass.lamps.shadows[lamp];
      if (darkness <= 0.0f) continue;
      glStencilMask(1u << lamp);
      glStencilFunc(GL_EQUAL, kFloorBit, kFloorBit | 1u << lamp);
      float const* const direction = &pass.lamps.directions[std::size_t{3} * lamp];
      float const x = direction[0] / direction[1], z = direction[2] / direction[1];
      Matrix const flat(1, 0, 0, 0, -x, 0, -z, 0, 0, 0, 1, 0, height * x, height, height * z, 1);
      for (std::size_t i = 0; i != all.size(); ++i) {
        NDrawItem const& item = list.GetItems()[i];
        if (!item.isPlaced || !item.model->DropsShadow()) continue;
        flatProgram.SetColor({0.0f, 0.0f, 0.0f, darkness * all[i].shade->opacity});
        flatProgram.SetPlace(item.global * flat);
        DrawParts(all[i].parts);
      }
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_POLYGON_OFFSET_FILL);
  }

  NContext const& context;
  boost::intrusive_ptr<data::events::NEventMultiplexer> const events;
  boost::intrusive_ptr<NChanges> const changes{new NChanges};
  NSurfaceProgram const solidProgram;
  NSurfaceProgram const clearProgram;  // for what is transparent, maybe in places
  NFlatProgram const flatProgram;
  NProgram const skyProgram;
  NTextures textures;
  NMeshes meshes;
  NGlVertexArray noVertices;
  NDrawList list;
  std::vector<Drawn> all;
  std::unordered_map<NMaterialNode const*, KnownShade> shades;
  NShade const plain = MakePlainShade();
  boost::intrusive_ptr<domain::geometry::NGeometryNode> floor;
  std::vector<std::uint64_t> floorSurfaces;  // that it was made from
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree;
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
    m_block->events->RemoveObserver(*m_block->changes);
    static_cast<void>(m_block.release());
  }
}

void NRenderer::Update(NSceneNode const& scene) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  block.tree = scene.GetSceneGraph();
  if (!block.tree) {
    // What changes meanwhile stays marked for the next tree.
    block.list.Clear();
    block.all.clear();
    return;
  }
  NMarks const marks = block.changes->Take();
  bool const walked = block.list.Update(*block.tree, marks);
  bool const changes = marks.materials || !marks.changedMaterials.empty();
  if (!marks.changedImages.empty() || marks.materials) block.textures.Forget(marks.changedImages);
  if (changes || walked) block.ForgetShades(marks);
  if (!marks.changedSurfaces.empty()) block.floor = nullptr;
  block.meshes.Forget(marks);
  if (walked || changes || marks.projections) {
    block.all.resize(block.list.GetItems().size());
    for (std::size_t i = 0; i != block.all.size(); ++i) block.Resolve(i);
  }
}

std::vector<NDrawItem> const& NRenderer::GetItems() const { return m_block->list.GetItems(); }

Box3 NRenderer::GetBox() const {
  Box3 box;
  for (NDrawItem const& item : m_block->list.GetItems()) {
    auto const geometry = item.model->GetGeometryNode();
    if (!item.isPlaced || !geometry) continue;
    Box3 part = item.model->GetBoundingBoxWithoutChildren();
    if (!part.IsEmpty() && !IsFinite(part)) part = NMeshes::GetFiniteBox(*geometry);
    if (part.IsEmpty()) continue;
    part.Transform(item.global);
    if (IsFinite(part)) box.ExtendBy(part);
  }
  return box;
}

void NRenderer::DrawPicture(NSceneNode const& scene, NEye const& eye, NTarget const& target,
                            NViewport const& viewport) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  Update(scene);
  target.Bind();
  block.BeginView(target, viewport);
  auto const environment = scene.GetEnvironment();
  Pass pass{eye, {}, {}, {}};
  if (environment) {
    pass.color = {static_cast<float>(environment->GetColorR()),
                  static_cast<float>(environment->GetColorG()),
                  static_cast<float>(environment->GetColorB())};
    pass.ambientLight = {static_cast<float>(environment->GetAmbientLightR()),
                         static_cast<float>(environment->GetAmbientLightG()),
                         static_cast<float>(environment->GetAmbientLightB())};
    pass.lamps = ReadLamps(*environment);
    pass.exposure = ReadExposure(*environment, eye);
    pass.sky = ReadSky(environment->GetEnvironmentMap(), block.textures);
  }
  glClearColor(pass.color[0], pass.color[1], pass.color[2], 1.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  if (environment) block.DrawBackdrop(pass, *environment);
  block.DrawSolid(pass);
  glDepthFunc(GL_GEQUAL);
  if (environment) block.DrawFloor(pass, *environment);
  block.DrawTransparent(pass);
}

void NRenderer::DrawNumbers(NSceneNode const& scene, NEye const& eye, NTarget const& target,
                            NViewport const& viewport) {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  Update(scene);
  target.Bind();
  block.BeginView(target, viewport);
  glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  block.flatProgram.Begin(eye);
  for (std::size_t i = 0; i != block.all.size(); ++i) {
    NDrawItem const& item = block.list.GetItems()[i];
    if (!item.isPlaced) continue;
    std::size_t const number = i + 1;
    block.flatProgram.SetColor({static_cast<float>(number >> 16 & 255) / 255.0f,
                                static_cast<float>(number >> 8 & 255) / 255.0f,
                                static_cast<float>(number & 255) / 255.0f, 1.0f});
    auto const type = item.model->GetBillboardType();
    block.flatProgram.SetPlace(type == 0 ? item.global : TurnBillboard(item.global, eye, type));
    block.DrawParts(block.all[i].parts);
  }
}

void NRenderer::Finish() const {
  NContextScope const scope(m_block->context);
  glFinish();
}

NUploads NRenderer::GetUploads() const {
  return {m_block->meshes.GetMeshUploadCount(), m_block->meshes.GetCoordsUploadCount(),
          m_block->textures.GetUploadCount()};
}

}  // namespace corvanta::renderer
