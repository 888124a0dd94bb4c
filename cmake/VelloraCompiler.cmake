# Compiler settings that every target of the project shares, as one interface target.
add_library(vellora_compiler INTERFACE)
target_compile_options(vellora_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${VELLORA_WARNINGS_AS_ERRORS}>:-Werror>)
# GCC 12 warns of overlapping copies inside std::string's own operator+ when it optimises (GCC bug
# 105651, mended in 13).
target_compile_options(vellora_compiler INTERFACE
  "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>")
if(VELLORA_SANITIZE)
  target_compile_options(vellora_compiler INTERFACE
    -fsanitize=${VELLORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vellora_compiler INTERFACE -fsanitize=${VELLORA_SANITIZE})
endif()
