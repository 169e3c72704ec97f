# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

# libhushmode.so.0 for programs, and the same objects as a static library for tests that reach what is not exported.
set(objects)
foreach(room ${HUSHMODE_CORE_ROOMS})
  list(APPEND objects $<TARGET_OBJECTS:room_${room}>)
endforeach()

add_library(hushmode SHARED ${objects})
set_target_properties(hushmode PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0)
add_library(hushmode_core STATIC ${objects})
foreach(room ${HUSHMODE_CORE_ROOMS})
  get_target_property(view room_${room} INTERFACE_INCLUDE_DIRECTORIES)
  target_include_directories(hushmode PUBLIC ${view})
  target_include_directories(hushmode_core PUBLIC ${view})
endforeach()
target_include_directories(hushmode INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/hushmode>)
add_library(hushmode::hushmode ALIAS hushmode)

install(TARGETS hushmode EXPORT hushmode-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
foreach(room ${HUSHMODE_CORE_ROOMS})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${room} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hushmode
    COMPONENT development FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT hushmode-targets NAMESPACE hushmode:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/hushmode
  COMPONENT development)

include(CMakePackageConfigHelpers)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/hushmode-config.cmake.in
  ${PROJECT_BINARY_DIR}/hushmode-config.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/hushmode)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/hushmode-config-version.cmake COMPATIBILITY SameMinorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/hushmode.pc.in ${PROJECT_BINARY_DIR}/hushmode.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/hushmode-config.cmake ${PROJECT_BINARY_DIR}/hushmode-config-version.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/hushmode COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/hushmode.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
