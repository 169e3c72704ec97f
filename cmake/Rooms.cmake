# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

# A room: one folder, one object library, one view of the headers that it may include.

# hushmode_room_view(<folder> <variable>): a folder of the build tree through which exactly the headers of <folder> can
# be included, as "<folder>/Name.h".
function(hushmode_room_view folder variable)
  string(REPLACE "/" "_" flat ${folder})
  set(view ${PROJECT_BINARY_DIR}/views/${flat})
  get_filename_component(parent ${view}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${view}/${folder} SYMBOLIC)
  set(${variable} ${view} PARENT_SCOPE)
endfunction()

# hushmode_room(<folder> [USES <room>...]): the room's target is room_<folder>; it sees its own headers, those of the
# rooms it uses, and those that these use.
function(hushmode_room folder)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  string(REPLACE "/" "_" flat ${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp ${PROJECT_SOURCE_DIR}/${folder}/*.h)
  add_library(room_${flat} OBJECT ${sources})
  set_target_properties(room_${flat} PROPERTIES LINKER_LANGUAGE CXX)
  hushmode_room_view(${folder} view)
  target_include_directories(room_${flat} PUBLIC $<BUILD_INTERFACE:${view}>)
  foreach(used ${ROOM_USES})
    string(REPLACE "/" "_" used_flat ${used})
    target_link_libraries(room_${flat} PUBLIC room_${used_flat})
  endforeach()
endfunction()
