#pragma once

namespace corvanta::data::environment_map {

/// How the image of an environment map is laid out. Attributes hold it.
enum NEnvironmentMapImageType : long {
  NEMIT_CUBE = 0,         ///< a cube map
  NEMIT_RECTANGULAR = 1,  ///< clearly wider or taller than square
  NEMIT_SQUARE = 2,       ///< square within a tenth
};

}  // namespace corvanta::data::environment_map
