#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "corvanta/core/locator/NLocator.h"
#include "corvanta/data/resource/image/NImage.h"
#include "corvanta/data/resource/image/NImageFormat.h"

namespace corvanta::data::resource::image {

/// Loads the image at `locator`; never null. In place of an image that is missing, broken or too
/// large comes the built-in not-found picture, raw. May be called from any thread; one load runs at
/// a time.
/// Fails: throws NNestedCreationError if this thread is loading already (a pass provider asks for
/// an image), core::zip::NZipError if an entry of an archive can't be unpacked, what the pass
/// provider throws, and core::error::NFileError if the not-found picture itself can't be read.
/// Decoding is done in a process of its own, within limits (corvanta/platform/limits.h), whose time
/// limit also bounds how long another thread waits.
/// Cost: one read, and decoding or unpacking where asked for; nothing is cached.
CORVANTA_API boost::intrusive_ptr<NImage> CreateImage(core::locator::NLocator const& locator,
                                                      NImageFormat format);

/// The same, and why it is the not-found picture, in a few words; empty if it isn't.
CORVANTA_API boost::intrusive_ptr<NImage> CreateImage(core::locator::NLocator const& locator,
                                                      NImageFormat format, std::wstring& reason);

/// How the file at `locator` is to be loaded, judged by its name: raw for the formats that
/// renderers take as they are (BMP, PNG, PPM, TARGA, DDS, HDR) and for a file that isn't there,
/// decoded for all other known ones.
/// Fails: as CreateImage for an entry of an archive, which is unpacked for the question.
CORVANTA_API NImageFormat LocatorToFormat(core::locator::NLocator const& locator);

/// How files of a format that the decoder doesn't know by name are to be loaded: decoded for ".tif"
/// and ".tiff" in any case. The extension begins with its point.
CORVANTA_API NImageFormat ExtensionToFormat(wchar_t const* extension);

}  // namespace corvanta::data::resource::image
