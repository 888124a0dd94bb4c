# What the companion is built with beyond the core's libraries: the targets companion_icu,
# companion_cli11, companion_mecab, companion_pugixml, companion_taglib, companion_curses and
# companion_curl. Where VELLORA_HEADERS is set, headers and libraries lie there side by side.
# VELLORA_COMPANION_LACKS names what is missing.
set(VELLORA_COMPANION_LACKS)

# companion_library(NAME HEADER [LIBRARY...])
function(companion_library name header)
  set(where)
  if(VELLORA_HEADERS)
    set(where PATHS "${VELLORA_HEADERS}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  endif()
  find_path(VELLORA_${name}_HEADERS "${header}" ${where})
  set(parts VELLORA_${name}_HEADERS)
  add_library(companion_${name} INTERFACE)
  target_include_directories(companion_${name} SYSTEM INTERFACE "${VELLORA_${name}_HEADERS}")
  foreach(library IN LISTS ARGN)
    find_library(VELLORA_${library}_LIBRARY ${library} ${where})
    target_link_libraries(companion_${name} INTERFACE "${VELLORA_${library}_LIBRARY}")
    list(APPEND parts VELLORA_${library}_LIBRARY)
  endforeach()
  foreach(part IN LISTS parts)
    if(NOT ${part})
      list(APPEND VELLORA_COMPANION_LACKS ${name})
    endif()
  endforeach()
  set(VELLORA_COMPANION_LACKS ${VELLORA_COMPANION_LACKS} PARENT_SCOPE)
endfunction()

# The macOS SDK has some headers of another ICU; this one is not among them.
companion_library(icu unicode/ucsdet.h icuuc icui18n)
companion_library(cli11 CLI/CLI.hpp)
companion_library(mecab mecab.h mecab)
companion_library(pugixml pugixml.hpp pugixml)
companion_library(taglib taglib/tag.h tag)

add_library(companion_curses INTERFACE)
if(APPLE)
  # The system's own takes UTF-8 under its plain name.
  target_link_libraries(companion_curses INTERFACE ncurses)
else()
  set(CURSES_NEED_WIDE TRUE)
  find_package(Curses REQUIRED)
  target_include_directories(companion_curses SYSTEM INTERFACE ${CURSES_INCLUDE_DIRS})
  target_link_libraries(companion_curses INTERFACE ${CURSES_LIBRARIES})
endif()
target_compile_definitions(companion_curses INTERFACE NCURSES_NOMACROS=1)

# Part of macOS, too. Earlier versions wait at the end for a name that is being looked up.
add_library(companion_curl INTERFACE)
if(APPLE)
  target_link_libraries(companion_curl INTERFACE curl)
else()
  find_package(CURL 7.87 REQUIRED)
  target_link_libraries(companion_curl INTERFACE CURL::libcurl)
endif()
