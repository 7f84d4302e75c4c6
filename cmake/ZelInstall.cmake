# Installation: the library, its headers, a CMake package (find_package(zelcore CONFIG) gives
# zel::core) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS zelcore EXPORT zelcoreTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/core/include/zel
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/zel/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zel)

set(zel_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zelcore)
install(EXPORT zelcoreTargets NAMESPACE zel:: DESTINATION ${zel_cmake_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/zelcoreConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zelcoreConfig.cmake
  INSTALL_DESTINATION ${zel_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelcoreConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zelcoreConfig.cmake ${PROJECT_BINARY_DIR}/zelcoreConfigVersion.cmake
  DESTINATION ${zel_cmake_dir})

if(ZEL_STATIC)
  set(ZEL_PC_CFLAGS "-DZEL_STATIC")
  set(ZEL_PC_LIBS_PRIVATE "-pthread")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/zelcore.pc.in ${PROJECT_BINARY_DIR}/zelcore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zelcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
