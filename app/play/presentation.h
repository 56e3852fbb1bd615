#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/animation/NAnimation.h"
#include "corvanta/importer/import.h"

namespace corvanta::app {

/// A presentation that shows a model through its cameras, one after the other: it stays at each for
/// two seconds and takes two for the way to the next. Cameras whose place isn't finite are passed
/// over. Without any it goes once around the model in twelve seconds, where all of it is seen
/// under `angle`.
/// Units: `angle` in degrees; the engine's time in seconds.
boost::intrusive_ptr<data::animation::NAnimation> CreatePresentation(
    importer::NImportedModel const& model, double angle);

}  // namespace corvanta::app
