#pragma once

namespace corvanta::core::attribute {

/// What the table of a class says of one attribute, for forms, tool tips and documentation.
///
/// A program that wants it makes an array from the table, which costs the nodes nothing:
///
///     constexpr corvanta::core::attribute::NAttributeDescription kLight[] = {
///     #define CORVANTA_ROWS_DESCRIPTIONS
///     #include "corvanta/data/domain/light/light_attributes.def"
///     };
struct NAttributeDescription {
  wchar_t const* name;
  char const* type;     // as its getter returns it
  char const* getter;   // "" where the value is read by the attribute's name alone
  char const* setter;   // likewise for writing
  char const* unit;     // "" without one
  char const* meaning;  // a phrase, in English
};

}  // namespace corvanta::core::attribute
