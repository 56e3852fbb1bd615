# cmake -D BUILD=... -D LIBDIR=... -D COMPILER=... -D FLAGS=... -D COMPONENTS=renderer,... -D EXAMPLES=... -P check.cmake
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGV}: ${status}\n${output}")
  endif()
endfunction()

set(work ${BUILD}/package_test)
file(REMOVE_RECURSE ${work})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${work}/staged)
file(RENAME ${work}/staged ${work}/moved)

# draws(PROGRAM): the program draws two pictures, or says what the machine lacks.
function(draws)
  execute_process(COMMAND ${ARGV} ${work} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(status EQUAL 0)
    file(READ ${work}/red.png start LIMIT 4 HEX)
  endif()
  if(NOT start STREQUAL "89504e47" AND NOT output MATCHES "EGL|driver")
    message(FATAL_ERROR "${ARGV}: ${status}\n${output}")
  endif()
  file(REMOVE ${work}/red.png ${work}/orange.png)
endfunction()

set(consumer ${CMAKE_CURRENT_LIST_DIR}/consumer)
run(${CMAKE_COMMAND} -G Ninja -S ${consumer} -B ${work}/cmake -D CMAKE_PREFIX_PATH=${work}/moved
  -D COMPONENTS=${COMPONENTS} -D EXAMPLES=${EXAMPLES} -D CMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${work}/cmake)
run(${work}/cmake/consumer)
if(COMPONENTS MATCHES renderer)
  draws(${work}/cmake/draw_to_png)
endif()

set(ENV{PKG_CONFIG_PATH} ${work}/moved/${LIBDIR}/pkgconfig)
# compile(MODULE SOURCE): makes ${work}/by_pkg_config of SOURCE and what pkg-config says of MODULE.
function(compile module source)
  execute_process(COMMAND pkg-config --cflags --libs ${module} OUTPUT_VARIABLE options
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(options UNIX_COMMAND "${options}")
  separate_arguments(flags UNIX_COMMAND "${FLAGS}")
  run(${COMPILER} -std=c++20 ${flags} ${source} -o ${work}/by_pkg_config ${options}
    -Wl,-rpath,${work}/moved/${LIBDIR})
endfunction()
compile(corvanta ${consumer}/main.cpp)
run(${work}/by_pkg_config)
if(COMPONENTS MATCHES renderer)
  compile(corvanta-renderer ${EXAMPLES}/draw_to_png.cpp)
  draws(${work}/by_pkg_config)
endif()
file(REMOVE_RECURSE ${work})
