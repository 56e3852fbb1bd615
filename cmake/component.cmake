# corvanta_install_component(NAME DESCRIPTION MODULES HEADER...): installs the library corvanta_NAME with its umbrella
# header, as the component NAME of the package, and a file for pkg-config. MODULES are those of pkg-config that a static
# library needs. cmake/NAME-dependencies.cmake finds the same for CMake.
function(corvanta_install_component name description modules)
  set_target_properties(corvanta_${name} PROPERTIES EXPORT_NAME ${name} INSTALL_RPATH $ORIGIN)
  install(TARGETS corvanta_${name} EXPORT corvanta-${name}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  foreach(header ${ARGN})
    cmake_path(RELATIVE_PATH header BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE installed)
    cmake_path(GET installed PARENT_PATH folder)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
  endforeach()
  install(FILES ${PROJECT_SOURCE_DIR}/corvanta/${name}.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvanta)
  install(EXPORT corvanta-${name}-targets NAMESPACE corvanta:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/corvanta)
  if(NOT BUILD_SHARED_LIBS)
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/${name}-dependencies.cmake
      DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/corvanta RENAME corvanta-${name}-dependencies.cmake)
  endif()
  set(component ${name})
  set(component_description ${description})
  if(BUILD_SHARED_LIBS)
    set(component_requires "corvanta\nRequires.private: ${modules}")
  else()
    set(component_requires "corvanta ${modules}")
  endif()
  file(RELATIVE_PATH corvanta_pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/component.pc.in ${PROJECT_BINARY_DIR}/corvanta-${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/corvanta-${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
