# corvanta_set_warnings(target): the warnings of this project, as errors where CORVANTA_WARNINGS_AS_ERRORS is on.
function(corvanta_set_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wold-style-cast
    $<$<BOOL:${CORVANTA_WARNINGS_AS_ERRORS}>:-Werror>)
  if(CMAKE_UNITY_BUILD)
    # What is in an anonymous namespace counts as a header's there.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
endfunction()
