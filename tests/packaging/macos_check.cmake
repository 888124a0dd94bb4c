# Compiles and links the whole for macOS on this machine, where there is a checker that can, and an
# SDK for it: CHECKER SDK --arch NAME --build FOLDER [--analyze] --define NAME=VALUE... SOURCES.
set(VELLORA_MACOS_CHECK "$ENV{VELLORA_MACOS_CHECK}" CACHE FILEPATH
  "Program that compiles a CMake project for macOS and checks what comes out")
set(VELLORA_MACOS_SDK "$ENV{VELLORA_MACOS_SDK}" CACHE PATH "The macOS SDK for that")
if(APPLE OR NOT VELLORA_MACOS_CHECK OR NOT VELLORA_MACOS_SDK)
  return()
endif()

# The libraries' headers without the others that lie beside them, and stubs of those that are linked.
set(headers "${CMAKE_BINARY_DIR}/macos-headers")
file(MAKE_DIRECTORY "${headers}")
foreach(library IN ITEMS nlohmann/json.hpp fmt/format.h fast_float/fast_float.h CLI/CLI.hpp
    taglib/tag.h unicode/ucsdet.h)
  get_filename_component(name "${library}" DIRECTORY)
  find_path(VELLORA_${name}_FOLDER "${library}" REQUIRED)
  file(CREATE_LINK "${VELLORA_${name}_FOLDER}/${name}" "${headers}/${name}" SYMBOLIC)
endforeach()
foreach(header IN ITEMS pugixml.hpp pugiconfig.hpp)
  file(CREATE_LINK "${VELLORA_pugixml_HEADERS}/${header}" "${headers}/${header}" SYMBOLIC)
endforeach()
file(CREATE_LINK "${VELLORA_mecab_HEADERS}/mecab.h" "${headers}/mecab.h" SYMBOLIC)
foreach(library IN ITEMS icuuc icui18n mecab pugixml tag)
  execute_process(COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/stub_library"
    "${VELLORA_${library}_LIBRARY}" lib${library}
    OUTPUT_FILE "${headers}/lib${library}.tbd" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
find_path(VELLORA_GTEST_FOLDER googletest/CMakeLists.txt PATHS /usr/src/googletest REQUIRED)

foreach(architecture IN ITEMS arm64 x86_64)
  set(analyze)
  if(architecture STREQUAL "arm64")
    set(analyze --analyze)
  endif()
  packaging_test(macos-${architecture}
    "${VELLORA_MACOS_CHECK}" "${VELLORA_MACOS_SDK}" --arch ${architecture}
    --build "${CMAKE_BINARY_DIR}/macos-${architecture}" ${analyze}
    --define "VELLORA_HEADERS=${headers}" --define "VELLORA_GTEST_SOURCE=${VELLORA_GTEST_FOLDER}"
    --define VELLORA_WARNINGS_AS_ERRORS=ON "${PROJECT_SOURCE_DIR}")
  # Each compiles everything, the first time.
  set_tests_properties(packaging/macos-${architecture} PROPERTIES
    LABELS macos-check TIMEOUT 3600 RUN_SERIAL TRUE)
endforeach()
