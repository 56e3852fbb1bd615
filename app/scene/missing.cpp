#include "app/scene/missing.h"

#include <algorithm>
#include <set>

#include "app/output/text.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/platform/picture.h"

namespace corvanta::app {

namespace {

using core::text::ToNarrow;
using data::domain::scenegraph::item::NSceneGraphModelNode;

bool HasModels(data::document::NDocument const& document) {
  auto const& items = document.GetItems();
  return std::any_of(items.GetNodeBegin(), items.GetNodeEnd(), [](core::node::NNode const& node) {
    auto const* const model = dynamic_cast<NSceneGraphModelNode const*>(&node);
    return model != nullptr && model->GetGeometryNode();
  });
}

/// Whether a surface has lines and points alone, which have no numbers in a picture.
bool IsOfLines(data::domain::geometry::NSurface const& surface) {
  auto const& indices = surface.GetIndices();
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    unsigned const a = indices[i], b = indices[i + 1], c = indices[i + 2];
    if (a != b && b != c && c != a) return false;
  }
  return indices.size() > 2;
}

bool HasLines(renderer::NDrawItem const& item) {
  auto const geometry = item.model->GetGeometryNode();
  if (!geometry) return false;
  auto const& surfaces = geometry->GetSurfaces();
  return std::any_of(surfaces.begin(), surfaces.end(),
                     [](auto const& surface) { return IsOfLines(*surface); });
}

}  // namespace

std::string FindEmptiness(data::document::NDocument const& document, NStagePreview& preview) {
  if (preview.GetRenderer().GetItems().empty()) {
    return HasModels(document) ? "all models are hidden" : "there are no models";
  }
  auto const& items = preview.GetRenderer().GetItems();
  if (std::any_of(items.begin(), items.end(), &HasLines)) return "";
  auto const numbers = preview.TakeNumbers();
  bool const isEmpty =
      std::all_of(numbers.begin(), numbers.end(), [](auto number) { return number == 0; });
  return isEmpty ? "no model is in view" : "";
}

bool IsLarge(NStagePreview const& preview) {
  constexpr std::size_t kManyModels = 2'000, kManyTriangles = 300'000;
  auto const& items = preview.GetRenderer().GetItems();
  if (items.size() > kManyModels) return true;
  std::size_t count = 0;
  for (auto const& item : items) {
    auto const geometry = item.model->GetGeometryNode();
    if (!geometry) continue;
    for (auto const& surface : geometry->GetSurfaces()) count += surface->GetIndices().size() / 3;
  }
  return count > kManyTriangles;
}

void PrintBrokenPictures(NStagePreview const& preview) {
  std::set<std::string> notes;
  for (auto const& image : preview.GetRenderer().GetBrokenImages()) {
    auto const& locator = image->GetImageLocator();
    std::wstring const file = core::uri::GetFile(locator.GetUri()).ToString();
    std::string reason = ToNarrow(image->GetImageError());
    if (reason.empty() && !locator.IsZipped()) platform::LoadPicture(file, &reason);
    std::string const subject = ToNarrow(locator.IsZipped() ? image->GetName() : file);
    std::string const note =
        "the picture can't be shown" + (reason.empty() ? reason : ": " + reason);
    if (notes.insert(subject).second) PrintNote(subject, note);
  }
}

}  // namespace corvanta::app
