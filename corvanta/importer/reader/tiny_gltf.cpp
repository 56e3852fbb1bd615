// The functions of the library, which stand in its header; it forgets one that it needs.
#include <fstream>

#define TINYGLTF_IMPLEMENTATION
#include "corvanta/importer/reader/gltf_model.h"
