# A room is a folder of src/ with a target of its own. What a room may include is exactly what it
# links: each room hands out its headers through a folder that holds nothing but a link to them, so
# an include against the arrows of docs/architecture.md finds no file and does not build.

# vellora_expose(TARGET PATH...) lets users of TARGET include the given headers or folders, named
# relative to src/ (for instance "matching" or "platform/clock.h"), or to VELLORA_ROOM_ROOT where a
# folder with rooms of its own sets it.
function(vellora_expose target)
  set(farm "${CMAKE_BINARY_DIR}/rooms/${target}")
  if(NOT VELLORA_ROOM_ROOT)
    set(VELLORA_ROOM_ROOT "${PROJECT_SOURCE_DIR}/src")
  endif()
  file(REMOVE_RECURSE "${farm}")  # links go, what they point to stays
  foreach(path IN LISTS ARGN)
    get_filename_component(parent "${farm}/${path}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${VELLORA_ROOM_ROOT}/${path}" "${farm}/${path}" SYMBOLIC)
  endforeach()
  target_include_directories(${target} INTERFACE "${farm}")
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL "INTERFACE_LIBRARY")
    target_include_directories(${target} PRIVATE "${farm}")
  endif()
endfunction()

# vellora_room(NAME EXPOSES path... SOURCES file... USES target...) makes the room's target
# vellora_NAME; USES are the rooms below it, which its own users may include too.
function(vellora_room name)
  cmake_parse_arguments(ROOM "" "" "EXPOSES;SOURCES;USES;PRIVATE" ${ARGN})
  set(target vellora_${name})
  if(ROOM_SOURCES)
    add_library(${target} OBJECT ${ROOM_SOURCES})
    target_link_libraries(${target} PUBLIC ${ROOM_USES} PRIVATE vellora_compiler ${ROOM_PRIVATE})
  else()
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE ${ROOM_USES})
  endif()
  vellora_expose(${target} ${ROOM_EXPOSES})
endfunction()
