# Compiler settings that every target of the project shares, as one interface target.
add_library(vellora_compiler INTERFACE)
target_compile_options(vellora_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${VELLORA_WARNINGS_AS_ERRORS}>:-Werror>)
# GCC 12 warns of overlapping copies inside std::string's own operator+ when it optimises (GCC bug
# 105651, mended in 13).
target_compile_options(vellora_compiler INTERFACE
  "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>")
# What Debian builds with under hardening=+all (dpkg-buildflags(1)), and a stack that grows page by
# page. A debug build does without.
option(VELLORA_HARDENING "Harden optimised builds: stack protector, checked copies, bound at start" ON)
if(VELLORA_HARDENING AND NOT APPLE AND NOT VELLORA_SANITIZE)
  set(optimised "$<NOT:$<CONFIG:Debug,>>")
  foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -Wformat
      -Werror=format-security -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    target_compile_options(vellora_compiler INTERFACE $<${optimised}:${flag}>)
  endforeach()
  foreach(flag IN ITEMS -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    target_link_options(vellora_compiler INTERFACE $<${optimised}:${flag}>)
  endforeach()
  set(program "$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>")
  target_link_options(vellora_compiler INTERFACE $<$<AND:${optimised},${program}>:-pie>)
endif()
# Clang tells of what libstdc++ deprecates even where libstdc++ itself uses it; GCC, which builds the
# same sources, tells of everything else.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND NOT APPLE)
  target_compile_options(vellora_compiler INTERFACE -Wno-deprecated-declarations)
endif()
if(VELLORA_SANITIZE)
  target_compile_options(vellora_compiler INTERFACE
    -fsanitize=${VELLORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vellora_compiler INTERFACE -fsanitize=${VELLORA_SANITIZE})
endif()
