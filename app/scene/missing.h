#pragma once

#include <string>

#include "app/scene/NStagePreview.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// Why the picture that `preview` took last shows no model; empty if it shows one.
/// Cost: most of that of a picture.
/// Fails: throws NRenderError as the preview does.
std::string FindEmptiness(data::document::NDocument const& document, NStagePreview& preview);

/// Whether FindEmptiness takes a while: for many models or triangles.
bool IsLarge(NStagePreview const& preview);

/// Prints a note for each picture that the preview needed and can't be read, with the reason.
void PrintBrokenPictures(NStagePreview const& preview);

}  // namespace corvanta::app
