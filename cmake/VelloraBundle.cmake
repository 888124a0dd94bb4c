# The macOS application bundle, Vellora.app. Its property list is filled in on every system, so that
# it can be tested on every system.
set(VELLORA_SIGNING_IDENTITY "-" CACHE STRING
  "Identity that signs Vellora.app: a name in the keychain, or - for an ad-hoc signature")

set(VELLORA_BUNDLE_IDENTIFIER org.vellora.Vellora)
set(VELLORA_BUNDLE_EXECUTABLE Vellora)
set(VELLORA_MINIMUM_MACOS "${CMAKE_OSX_DEPLOYMENT_TARGET}")
file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" VELLORA_COPYRIGHT REGEX "^Copyright" LIMIT_COUNT 1)
set(VELLORA_INFO_PLIST "${CMAKE_BINARY_DIR}/packaging/macos/Info.plist")
configure_file("${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in" "${VELLORA_INFO_PLIST}"
  @ONLY NEWLINE_STYLE UNIX)

# vellora_bundle(TARGET) makes the executable TARGET the program of Vellora.app: property list, icon
# and signature, and the targets vellora-zip and vellora-dmg that pack it for others into dist/ of
# the build folder. To be called in the folder of TARGET.
function(vellora_bundle target)
  set(packaging "${PROJECT_SOURCE_DIR}/packaging/macos")
  set(icon "${packaging}/Vellora.icns")
  set(entitlements "${packaging}/Vellora.entitlements")
  target_sources(${target} PRIVATE "${icon}")
  set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    MACOSX_BUNDLE_INFO_PLIST "${VELLORA_INFO_PLIST}"
    OUTPUT_NAME "${VELLORA_BUNDLE_EXECUTABLE}")

  # The signature seals the property list and the icon too: a change of either signs anew. The
  # hardened runtime is what the entitlement belongs to.
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS
    "${icon}" "${entitlements}" "${VELLORA_INFO_PLIST}")
  set(bundle "$<TARGET_BUNDLE_DIR:${target}>")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND codesign --force --options runtime --timestamp=none
      --entitlements "${entitlements}" --sign "${VELLORA_SIGNING_IDENTITY}" "${bundle}"
    COMMENT "Signing Vellora.app as ${VELLORA_SIGNING_IDENTITY}" VERBATIM)

  set(packages "${CMAKE_BINARY_DIR}/dist")
  set(name "Vellora-${PROJECT_VERSION}")
  foreach(kind IN ITEMS zip dmg)
    add_custom_target(vellora-${kind}
      COMMAND "${PROJECT_SOURCE_DIR}/scripts/macos/pack" ${kind} "${bundle}"
        "${packages}/${name}.${kind}"
      COMMENT "Packing ${name}.${kind}" VERBATIM)
    add_dependencies(vellora-${kind} ${target})
  endforeach()
  install(TARGETS ${target} BUNDLE DESTINATION .)
endfunction()
