#pragma once

#include <string>

#include "app/scene/NOverview.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// Makes a material switch of all materials of the document, in their order, and all models of the
/// tree, and gives each model the material at `index`.
/// Fails: false, and no change, if there is no such material.
bool SwitchMaterial(data::document::NDocument& document, NOverview::Tree const& tree,
                    unsigned index);

/// Lays the picture of a file on all models of the tree in the place of their textures; it follows
/// the texture coordinates of the models. A model without a material gets a white one.
/// Fails: false, and no change, if the file isn't a picture.
bool MapPicture(data::document::NDocument& document, NOverview::Tree const& tree,
                std::string const& file);

/// Maps all textures of the tree's models by one projection, which is as large as the scene. A
/// material without a texture gets the built-in floor. `method` is a projection method.
void ProjectTextures(data::document::NDocument& document, NOverview::Tree const& tree,
                     std::wstring const& method);

}  // namespace corvanta::app
