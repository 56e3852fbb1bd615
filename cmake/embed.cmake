# Makes a C++ source that defines an array of a header with the bytes of a file, and adds it to a target.
#   corvanta_embed(<target> <file> <header> <namespace> <array>)
# The header declares the array with its length; a file of another length doesn't compile.
function(corvanta_embed target file header namespace array)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(................................)" "\\1\n    " bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1, " bytes "${bytes}")
  set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded/${array}.cpp)
  file(CONFIGURE OUTPUT ${source} @ONLY CONTENT [=[
#include "@header@"

namespace @namespace@ {

unsigned char const @array@[] = {
    @bytes@};

}  // namespace @namespace@
]=])
  target_sources(${target} PRIVATE ${source})
  set_source_files_properties(${source} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()
