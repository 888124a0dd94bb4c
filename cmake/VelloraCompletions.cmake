# vellora_completions(PROGRAM COMPONENT) installs the program's completions for bash, fish and zsh:
# PROGRAM.bash, PROGRAM.fish and _PROGRAM in the folder "completions".
function(vellora_completions program component)
  set(folder "${CMAKE_CURRENT_SOURCE_DIR}/completions")
  install(FILES "${folder}/${program}.bash" RENAME ${program}
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT ${component})
  install(FILES "${folder}/${program}.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT ${component})
  # Where zsh looks depends on whether the system or its administrator has put the file there.
  install(CODE "
    set(folder vendor-completions)
    if(NOT CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
      set(folder site-functions)
    endif()
    file(INSTALL \"${folder}/_${program}\"
      DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/zsh/\${folder}\")"
    COMPONENT ${component})
endfunction()
