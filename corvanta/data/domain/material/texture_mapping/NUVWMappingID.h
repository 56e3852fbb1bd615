#pragma once

namespace corvanta::data::domain::material::texture_mapping {

/// The key of a surface's UVW sets. Any number is a key; these are the ones that the library uses.
enum NUVWMappingID : unsigned int {
  NUVWID_PRIMITIVE = 0,  // the set of a built-in primitive
  NUVWID_FLAT = 1,       // the set assigned from a flat array; every mapping looks it up first
};

}  // namespace corvanta::data::domain::material::texture_mapping
