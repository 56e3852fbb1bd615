#include "corvanta/importer/deform/NDeformer.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "corvanta/importer/deform/NAffine.h"
#include "corvanta/importer/deform/NShape.h"

namespace corvanta::importer {

namespace {

using VX_Math::Matrix;

constexpr Matrix kGone{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

// What the arrays of a surface come from.
struct Pose {
  std::vector<Matrix> joints;  // kGone for one that isn't there
  std::vector<float> weights;

  bool operator==(Pose const&) const = default;
};

bool IsFinite(Matrix const& matrix) {
  return std::all_of(matrix.data(), matrix.data() + 16,
                     [](float value) { return std::isfinite(value); });
}

}  // namespace

struct NDeformer::Entry {
  Part part;
  Pose pose;  // of what the surface holds
};

// Where items are in the frame around the root, each worked out once.
class NDeformer::Places {
 public:
  NAffine const& Get(Item const& item) {
    if (auto const known = m_known.find(&item); known != m_known.end()) return known->second.place;
    std::vector<boost::intrusive_ptr<Item const>> open{&item};
    while (auto const parent = GetParent(*open.back())) {
      if (m_known.count(parent.get()) != 0) break;
      open.push_back(parent);
    }
    for (; !open.empty(); open.pop_back()) Add(*open.back());
    return m_known.at(&item).place;
  }

 private:
  static boost::intrusive_ptr<Item const> GetParent(Item const& item) {
    if (item.TransformIsAbsolute()) return nullptr;
    return item.GetParent();
  }

  struct Known {
    boost::intrusive_ptr<Item const> item;  // so that no other gets its address
    NAffine place;
  };

  void Add(Item const& item) {
    NAffine place(item.GetTransform());
    if (auto const parent = GetParent(item)) place = place * m_known.at(parent.get()).place;
    m_known.emplace(&item, Known{&item, place});
  }

  std::unordered_map<Item const*, Known> m_known;
};

constexpr wchar_t kWeightPrefix[] = L"morph.";

std::wstring NDeformer::GetWeightName(std::size_t target) {
  return kWeightPrefix + std::to_wstring(target);
}

bool NDeformer::IsWeightName(std::wstring const& name) { return name.starts_with(kWeightPrefix); }

NDeformer::NDeformer() = default;
NDeformer::~NDeformer() = default;

void NDeformer::Add(Part part) {
  m_parts.push_back(std::make_unique<Entry>());
  Entry& entry = *m_parts.back();
  entry.pose.weights.resize(part.shape->GetTargetCount());
  entry.part = std::move(part);
}

void NDeformer::Update() {
  Places places;
  for (std::size_t i = 0; i != m_parts.size(); ++i) Update(*m_parts[i], places);
}

void NDeformer::Update(Entry& entry, Places& places) {
  Part const& part = entry.part;
  NShape const& shape = *part.shape;
  auto const model = part.model.Get();
  if (!model || part.surface->GetCoords().size() != shape.GetVertexCount()) return;

  Pose pose;
  if (!part.joints.empty()) {
    NAffine const toModel = places.Get(*model).Inverse();
    for (Part::Joint const& joint : part.joints) {
      auto const item = joint.item.Get();
      pose.joints.push_back(item ? (NAffine(joint.bind) * places.Get(*item) * toModel).ToMatrix()
                                 : kGone);
      if (!IsFinite(pose.joints.back())) return;
    }
  }
  pose.weights.resize(shape.GetTargetCount());
  auto const host = pose.weights.empty() ? nullptr : part.weights.Get();
  for (std::size_t i = 0; host && i != pose.weights.size(); ++i) {
    auto const* const weight = host->QueryAttribute(GetWeightName(i));
    if (weight != nullptr) pose.weights[i] = static_cast<float>(weight->GetDouble());
    if (!std::isfinite(pose.weights[i])) return;
  }
  if (pose == entry.pose) return;

  auto const arrays = shape.Evaluate(pose.joints, pose.weights);
  // A listener may call for an update, too.
  entry.pose = std::move(pose);
  try {
    part.surface->Assign(arrays.coords, arrays.normals, part.surface->GetIndices(),
                         part.surface->GetUVWsMap());
  } catch (...) {
    entry.pose = {};
    throw;
  }
}

}  // namespace corvanta::importer
