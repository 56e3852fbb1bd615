#include "app/scene/material_choice.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/data/switches/NMaterialSwitch.h"
#include "corvanta/platform/picture.h"

namespace corvanta::app {

namespace {

namespace texture_mapping = data::domain::material::texture_mapping;
using core::node::NNodeID;
using core::node::NNodeReference;
using data::domain::material::NMaterialNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using Image = boost::intrusive_ptr<data::domain::image::NImageNode>;
using Mapping = boost::intrusive_ptr<texture_mapping::NTextureMapping>;
using ModelPath = texture_mapping::NProjectionMapping::ModelPath;

/// The models of a tree, each as often as it is shown.
class Models : public data::domain::scenegraph::NSceneGraphTraverser {
 public:
  explicit Models(NOverview::Tree const& tree) { Start(*tree, nullptr); }

  std::vector<std::pair<boost::intrusive_ptr<NSceneGraphModelNode>, ModelPath>> found;

 private:
  using NSceneGraphTraverser::Before;
  void Before(NSceneGraphModelNode& model, void const*, NCheckPoints const& checkPoints) override {
    found.emplace_back(&model, ModelPath(model, GetTree(), checkPoints));
  }
};

void AddTexture(data::document::NDocument& document, NMaterialNode& material, Image const& image,
                texture_mapping::NTextureMapping& mapping) {
  auto const texture = document.GetTextures().CreateNode(NNodeID());
  texture->SetType(
      static_cast<data::domain::texture::NTextureType>(data::domain::texture::NTU_COLOR));
  texture->SetImage(image);
  material.AddTexture(texture, mapping, 0);
}

/// The materials of the models; a model without one gets a white one.
std::set<boost::intrusive_ptr<NMaterialNode>> GetMaterials(data::document::NDocument& document,
                                                           Models const& models) {
  std::set<boost::intrusive_ptr<NMaterialNode>> materials;
  boost::intrusive_ptr<NMaterialNode> white;
  for (auto const& [model, path] : models.found) {
    if (!model->GetMaterialNode()) {
      if (!white) {
        white = document.GetMaterials().CreateNode(NNodeID());
        white->SetDiffuseR(1);
        white->SetDiffuseG(1);
        white->SetDiffuseB(1);
      }
      model->SetMaterial(white);
    }
    materials.insert(model->GetMaterialNode());
  }
  return materials;
}

boost::intrusive_ptr<data::domain::projection::NProjectionNode> CreateProjector(
    data::document::NDocument& document, VX_Math::Box3 const& box, std::wstring const& method) {
  auto const node = document.GetProjections().CreateNode(NNodeID());
  node->SetProjectionMethod(method);
  if (box.IsEmpty()) return node;
  VX_Math::Vec3 const center = box.GetCenter();
  VX_Math::Vec3 const size = box.GetSize();
  // One length along all axes, so that a picture isn't drawn out.
  double const length = std::max({size.x, size.y, size.z, 1e-30f});
  node->SetTranslationX(center.x);
  node->SetTranslationY(center.y);
  node->SetTranslationZ(center.z);
  node->SetScaleX(length);
  node->SetScaleY(length);
  node->SetScaleZ(length);
  return node;
}

}  // namespace

bool SwitchMaterial(data::document::NDocument& document, NOverview::Tree const& tree,
                    unsigned index) {
  boost::intrusive_ptr<data::switches::NMaterialSwitch> const choice(
      new data::switches::NMaterialSwitch);
  auto& materials = document.GetMaterials();
  for (auto at = materials.GetTypedNodeBegin(); at != materials.GetTypedNodeEnd(); ++at) {
    choice->AddMaterial(*at, static_cast<unsigned>(choice->GetMaterials().size()));
  }
  for (auto const& [model, path] : Models(tree).found) choice->AddModel(*model);
  if (index >= choice->GetMaterials().size()) return false;
  auto const chosen = *std::next(choice->GetMaterials().begin(), index);
  for (auto const& reference : choice->GetModels()) {
    if (auto const model = reference.Get()) model->SetMaterial(chosen);
  }
  return true;
}

bool MapPicture(data::document::NDocument& document, NOverview::Tree const& tree,
                std::string const& file) {
  std::error_code error;
  auto const path = std::filesystem::absolute(file, error);
  std::wstring const wide = core::text::ToWide(path.string());
  unsigned width = 0, height = 0;
  if (error || !platform::GetPictureSize(wide, width, height)) return false;
  Image const image = document.GetImages().CreateNode(NNodeID());
  image->SetImageLocator(
      core::locator::NLocator(core::uri::NUri::CreateFileUri(core::uri::NPath(wide))));
  boost::intrusive_ptr<texture_mapping::NUVWMapping> const mapping(
      new texture_mapping::NUVWMapping(texture_mapping::NUVWMT_INTERNAL));
  for (auto const& material : GetMaterials(document, Models(tree))) {
    while (material->RemoveTexture(0)) continue;
    AddTexture(document, *material, image, *mapping);
  }
  return true;
}

void ProjectTextures(data::document::NDocument& document, NOverview::Tree const& tree,
                     std::wstring const& method) {
  Models const models(tree);
  auto const node =
      CreateProjector(document, data::domain::scenegraph::tree::GetBoundingBox(*tree), method);
  boost::intrusive_ptr<texture_mapping::NProjectionMapping> const mapping(
      new texture_mapping::NProjectionMapping);
  for (auto const& [model, path] : models.found) {
    node->AddModel(path);
    mapping->AddProjectionData(path, *node);
  }
  Image floor;
  for (auto const& material : GetMaterials(document, models)) {
    std::vector<NMaterialNode::TextureReference> textures;
    for (auto const& entry : material->GetTextures()) textures.push_back(entry.first);
    while (material->RemoveTexture(0)) continue;
    for (auto const& texture : textures) {
      material->AddTexture(texture, *mapping,
                           static_cast<unsigned>(material->GetTextures().size()));
    }
    if (!textures.empty()) continue;
    if (!floor) {
      floor = document.GetImages().CreateNode(NNodeID());
      floor->SetImageLocator(data::internal::GetDefaultFloorImage());
    }
    AddTexture(document, *material, floor, *mapping);
  }
}

}  // namespace corvanta::app
