# Compiler settings that every target of the project shares, as one interface target.
add_library(vellora_compiler INTERFACE)
target_compile_options(vellora_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${VELLORA_WARNINGS_AS_ERRORS}>:-Werror>)
if(VELLORA_SANITIZE)
  target_compile_options(vellora_compiler INTERFACE
    -fsanitize=${VELLORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vellora_compiler INTERFACE -fsanitize=${VELLORA_SANITIZE})
endif()
