#include "corvanta/importer/deform/NDeformations.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/deform/NShape.h"
#include "corvanta/importer/mesh.h"
#include "corvanta/importer/placement.h"

namespace corvanta::importer {

NDeformations::NDeformations(NImportTarget& target, neutral::NSceneView const& scene,
                             std::optional<double> crease, std::size_t mostCopied)
    : m_target(target),
      m_scene(scene),
      m_crease(crease),
      m_left(mostCopied),
      m_hasMissingJoints(scene.Get<neutral::NSkin>().size()) {}

bool NDeformations::Take(neutral::NMesh const& mesh, std::uint32_t skin, bool isFirst) {
  std::size_t cost = skin == neutral::kNone ? 0 : m_scene.Get<neutral::NSkin>()[skin].joints.count;
  cost += mesh.targets.count;
  // The first is no larger than the file.
  if (!isFirst) {
    cost += mesh.positions.count + 3 * mesh.triangles.count + mesh.influences.count;
    for (auto const& target : m_scene.Get(mesh.targets)) cost += target.offsets.count;
  }
  if (cost > m_left) {
    ++m_stiffCount;
    return false;
  }
  m_left -= cost;
  return true;
}

NDeformations::GeometryPointer NDeformations::AddModel(
    data::domain::scenegraph::item::NSceneGraphModelNode& model, std::size_t number,
    std::uint32_t skin, std::size_t node, NCornerColors const& getColor) {
  auto const& mesh = m_scene.Get<neutral::NMesh>()[number];
  if (mesh.influences.count == 0) skin = neutral::kNone;
  if (skin == neutral::kNone && mesh.targets.count == 0) return nullptr;
  auto& shape = m_shapes[number];
  if (!Take(mesh, skin, shape == nullptr)) return nullptr;

  std::vector<std::uint32_t> vertices;
  auto const surface = CreateSurface(m_scene, mesh, m_crease, &vertices, getColor);
  if (!shape) {
    shape = std::make_shared<NShape const>(m_scene, mesh, *surface, vertices,
                                           IsFaceted(mesh, m_crease));
    m_unevenCount += shape->IsUneven();
  }
  auto const geometry = m_target.Create(m_target.GetDocument().GetGeometries());
  SetName(*geometry, m_scene.GetText(mesh.name));
  geometry->AddSurface(*surface);
  m_pending.push_back({{shape, surface, model, {}, {}}, skin, node});
  return geometry;
}

void NDeformations::AddWeights(Item& item, neutral::NNode const& node, std::size_t count) {
  auto const weights = m_scene.Get(node.weights);
  for (std::size_t i = 0; i != count; ++i) {
    auto* const attribute = item.AddAttribute(NDeformer::GetWeightName(i), true);
    if (attribute == nullptr) continue;  // another mesh of the node has it
    double const weight = i < weights.size() && std::isfinite(weights[i]) ? weights[i] : 0.0;
    attribute->SetValue(weight, false);
  }
}

void NDeformations::AddJoints(Pending& pending,
                              std::vector<boost::intrusive_ptr<Item>> const& items) {
  auto const& skin = m_scene.Get<neutral::NSkin>()[pending.skin];
  auto& joints = pending.part.joints;
  for (neutral::NJoint const& joint : m_scene.Get(skin.joints)) {
    bool const isThere = joint.node != neutral::kNone;
    joints.push_back({isThere ? core::node::NNodeReference<Item>(*items[joint.node])
                              : core::node::NNodeReference<Item>(),
                      ToMatrix(joint.bind)});
    if (!isThere) m_hasMissingJoints[pending.skin] = true;
  }
  if (pending.part.shape->GetJointCount() > joints.size()) m_hasMissingJoints[pending.skin] = true;
}

void NDeformations::Bind(std::vector<boost::intrusive_ptr<Item>> const& items) {
  if (m_pending.empty()) return;
  m_deformer = std::make_shared<NDeformer>();
  for (Pending& pending : m_pending) {
    Item& item = *items[pending.node];
    AddWeights(item, m_scene.Get<neutral::NNode>()[pending.node],
               pending.part.shape->GetTargetCount());
    pending.part.weights = core::node::NNodeReference<Item>(item);
    if (pending.skin != neutral::kNone) AddJoints(pending, items);
    m_deformer->Add(std::move(pending.part));
  }
  m_pending.clear();
  m_deformer->Update();
}

std::vector<std::string> NDeformations::GetNotes() const {
  std::vector<std::string> notes;
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(core::text::Plural(count, one, many));
  };
  note(m_unevenCount, "mesh has bone weights that don't sum to one, and were scaled",
       "meshes have bone weights that don't sum to one, and were scaled");
  note(static_cast<std::size_t>(
           std::count(m_hasMissingJoints.begin(), m_hasMissingJoints.end(), true)),
       "skin has bones that aren't there; what they hold follows the others",
       "skins have bones that aren't there; what they hold follows the others");
  note(m_stiffCount, "model is moved by bones or morph targets beyond the most, and stands still",
       "models are moved by bones or morph targets beyond the most, and stand still");
  return notes;
}

}  // namespace corvanta::importer
