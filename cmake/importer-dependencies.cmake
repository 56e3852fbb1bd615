find_dependency(PkgConfig)
if(NOT TARGET PkgConfig::libzip)
  pkg_check_modules(libzip REQUIRED IMPORTED_TARGET libzip)
endif()
