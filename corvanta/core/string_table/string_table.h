#pragma once

#include <string>

#include "corvanta/export.h"

/// The texts that the library shows to people: the default names of nodes and domains. They are
/// English until a program sets a translation. May be used from any thread, also by destructors of
/// statics.
namespace corvanta::core::string_table {

/// Names a text of the table.
enum NStringKey : int {
  DATA_ANIMATION,
  DATA_CAMERA,
  DATA_ENVIRONMENT,
  DATA_GEOMETRY,
  DATA_GROUP,
  DATA_IMAGE,
  DATA_LIGHT,
  DATA_LIGHT_ENV,
  DATA_MATERIAL,
  DATA_MODEL,
  DATA_MOVIE,
  DATA_PROJECTION,
  DATA_REFERENCE,
  DATA_SCENE,
  DATA_SCENEGRAPH,  ///< a boost::format text, given the text of the item's kind: the name of a new
                    ///< item
  DATA_SCENEGRAPH_ITEM,
  DATA_SCENEGRAPH_TREE,
  DATA_SOUND,
  DATA_TEXTURE,
};

/// The present text of `key`. The reference stays good, with this text, as long as the program.
/// Fails: the empty text for a key that the table doesn't have.
/// Cost: one load.
CORVANTA_API std::wstring const& GetString(NStringKey key);

/// Makes `text` the text of `key`, for nodes and domains made from now on. Texts once set are kept.
/// Fails: false for a key that the table doesn't have.
CORVANTA_API bool SetString(NStringKey key, std::wstring const& text);

/// A number that changes with every `SetString`. What is made from texts can be kept as long as the
/// number that was read before them stays the same.
CORVANTA_API unsigned long GetVersion();

}  // namespace corvanta::core::string_table
