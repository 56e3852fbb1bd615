#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/animation/NAnimationNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/switches/NMaterialSwitch.h"
#include "corvanta/export.h"
#include "corvanta/importer/NUpAxis.h"
#include "corvanta/importer/deform/NDeformer.h"

namespace corvanta::importer {

/// What became of a model file.
struct NImportedModel {
  std::string file;
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> tree;
  // In the file's order; a camera that stands at no node isn't there.
  std::vector<boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphCameraNode>> cameras;
  // In the file's order, also those that move nothing.
  std::vector<boost::intrusive_ptr<data::domain::animation::NAnimationNode>> animations;
  // The names of the file's variants, in UTF-8, and the choices that are made with each: entry i of
  // a switch is for variant i.
  std::vector<std::string> variants;
  std::vector<boost::intrusive_ptr<data::switches::NMaterialSwitch>> switches;
  std::vector<std::string> notes;  // what the file holds and the scene doesn't, in UTF-8
  std::vector<std::string> files;  // that were read for it, without pictures
  double readMilliseconds = 0.0;
  double buildMilliseconds = 0.0;
  // To be updated whenever an animation has moved items, or somebody else has; null where neither
  // bones nor morph targets move a vertex.
  std::shared_ptr<NDeformer> deformer;
};

/// What becomes of a model file where it can't say it itself.
struct NImportOptions {
  /// The axis of the file that points up, and y in the scene: X, Y or Z. Without it, what the file
  /// or its format says.
  std::optional<NUpAxis> up{};
  /// Units: length of the file's unit in the scene's; without it in metres, as the file says, and 1
  /// where it doesn't.
  std::optional<double> unit = 1.0;
  /// Where faces meet in a crease; see CreateSurface. Units: degrees.
  std::optional<double> crease{};
};

/// Reads a model file, by a program of its own and within the limits of limits.h, and builds its
/// scene as a tree of `document`, named after the file.
/// Fails: throws NImportError, with no change, for a file that can't be used; std::runtime_error if
/// its pictures can't be kept.
CORVANTA_API NImportedModel ImportModel(data::document::NDocument& document,
                                        std::string const& file,
                                        NImportOptions const& options = {});

/// Gives the models of `model` the materials of its first variant of that name.
/// Raises: what SetMaterial does. Fails: false, with no change, if there is none.
CORVANTA_API bool ChooseVariant(NImportedModel const& model, std::string const& name);

}  // namespace corvanta::importer
