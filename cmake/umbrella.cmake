# Checks that corvanta/corvanta.h includes every public header; with -DWRITE=ON writes it.
#   cmake [-DWRITE=ON] -P cmake/umbrella.cmake
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/.. ABSOLUTE)
file(GLOB_RECURSE headers RELATIVE ${root} ${root}/corvanta/*.h)
# The importer and the renderer are libraries of their own, and have their own.
list(FILTER headers EXCLUDE REGEX "^corvanta/(importer|renderer)")
list(SORT headers)
set(text "#pragma once\n\n// Every public header of corvanta. Written by cmake/umbrella.cmake.\n\n")
foreach(header ${headers})
  # Details belong to the headers that need them, but for the classes that callers see by name; the platform
  # layer's picture side belongs to its decoder, and its processes to who starts them.
  if(header MATCHES "(NNodeColorTranslator|NFIImage|NUnknownImage|NFIImageError)\\.h$" OR NOT header MATCHES "/detail/|/fwd\\.h$|corvanta/(corvanta|names)\\.h$|corvanta/platform/(child/.*|child_process|decode_.*|decoded_picture|decoder_client|descriptor|file|narrow_path|picture|picture_header|shared_memory)\\.h$")
    string(APPEND text "#include \"${header}\"\n")
  endif()
endforeach()
set(umbrella ${root}/corvanta/corvanta.h)
if(WRITE)
  file(WRITE ${umbrella} "${text}")
else()
  file(READ ${umbrella} present)
  if(NOT present STREQUAL text)
    message(FATAL_ERROR "corvanta/corvanta.h doesn't include every public header: cmake -DWRITE=ON -P cmake/umbrella.cmake")
  endif()
endif()
