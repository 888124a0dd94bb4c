# The libraries of the portable core. All are used header-only, so that nothing outside the system
# is needed at run time on macOS. Where a package has no CMake file, VELLORA_HEADERS names a folder
# that holds its headers.
set(VELLORA_HEADERS "" CACHE PATH
  "Folder with the headers of nlohmann_json, fmt and fast_float, and with the companion's libraries")

add_library(vellora_json INTERFACE)
add_library(vellora_numbers INTERFACE)
target_compile_definitions(vellora_numbers INTERFACE FMT_HEADER_ONLY=1)
if(VELLORA_HEADERS)
  target_include_directories(vellora_json SYSTEM INTERFACE "${VELLORA_HEADERS}")
  target_include_directories(vellora_numbers SYSTEM INTERFACE "${VELLORA_HEADERS}")
else()
  find_package(nlohmann_json 3.9 REQUIRED)
  target_link_libraries(vellora_json INTERFACE nlohmann_json::nlohmann_json)
  find_path(VELLORA_FMT_HEADERS fmt/format.h REQUIRED)
  find_path(VELLORA_FAST_FLOAT_HEADERS fast_float/fast_float.h REQUIRED)
  foreach(folder IN ITEMS "${VELLORA_FMT_HEADERS}" "${VELLORA_FAST_FLOAT_HEADERS}")
    if(NOT folder STREQUAL "/usr/include")
      target_include_directories(vellora_numbers SYSTEM INTERFACE "${folder}")
    endif()
  endforeach()
endif()
