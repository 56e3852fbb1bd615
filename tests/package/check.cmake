# cmake -D BUILD=... -D LIBDIR=... -D COMPILER=... -D FLAGS=... -P check.cmake
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

set(consumer ${CMAKE_CURRENT_LIST_DIR}/consumer)
run(${CMAKE_COMMAND} -G Ninja -S ${consumer} -B ${work}/cmake -D CMAKE_PREFIX_PATH=${work}/moved
  -D CMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${work}/cmake)
run(${work}/cmake/consumer)

set(ENV{PKG_CONFIG_PATH} ${work}/moved/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs corvanta OUTPUT_VARIABLE options
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(options UNIX_COMMAND "${options}")
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
run(${COMPILER} -std=c++20 ${flags} ${consumer}/main.cpp -o ${work}/by_pkg_config ${options}
  -Wl,-rpath,${work}/moved/${LIBDIR})
run(${work}/by_pkg_config)
file(REMOVE_RECURSE ${work})
