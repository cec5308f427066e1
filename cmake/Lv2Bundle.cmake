# SPDX-License-Identifier: MIT
# The LV2 bundle ondex.lv2, put together in the build from the parts of the modules that have a share in it, and
# installed from there into the LV2 path of choice, by itself with `cmake --install <build> --component lv2`.
set(ONDEX_LV2_DIR "${CMAKE_INSTALL_LIBDIR}/lv2" CACHE PATH
    "Where ondex.lv2 is installed: within the prefix, or absolute, such as a home folder's .lv2")
# For LV2_PATH, to try the bundle of the build.
set(ONDEX_LV2_BUILD_PATH "${PROJECT_BINARY_DIR}/lv2")
set(ONDEX_LV2_BUNDLE "${ONDEX_LV2_BUILD_PATH}/ondex.lv2")

# A bundle has one manifest. It is written once every part has been added, whichever there are.
add_custom_target(lv2_bundle ALL)
file(GENERATE OUTPUT "${ONDEX_LV2_BUNDLE}/manifest.ttl"
     CONTENT "$<TARGET_PROPERTY:lv2_bundle,ONDEX_MANIFEST>")
install(FILES "${ONDEX_LV2_BUNDLE}/manifest.ttl" DESTINATION "${ONDEX_LV2_DIR}/ondex.lv2" COMPONENT lv2)

# Adds a shared object named <name> to the bundle, the statements that lead to it to the manifest, and what else
# there is to say of it as files of their own. The manifest's part calls the object @ONDEX_LV2_BINARY@.
#
#   ondex_lv2_part(<target> NAME <name> EXPORTS <version script> MANIFEST <file.ttl.in> [DATA <files>])
function(ondex_lv2_part target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;EXPORTS;MANIFEST" "DATA")
  # Bound when it is loaded, as the dynamic linker's work has no place in real time; libraries that nothing of is
  # used are left out.
  set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME "${arg_NAME}"
                                             LIBRARY_OUTPUT_DIRECTORY "${ONDEX_LV2_BUNDLE}")
  target_link_options(${target} PRIVATE
    "LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS}" "LINKER:--exclude-libs,ALL"
    "LINKER:--as-needed" "LINKER:--gc-sections" "LINKER:-z,now")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS}")
  install(TARGETS ${target} LIBRARY DESTINATION "${ONDEX_LV2_DIR}/ondex.lv2" COMPONENT lv2)
  add_dependencies(lv2_bundle ${target})

  set(ONDEX_LV2_BINARY "${arg_NAME}${CMAKE_SHARED_MODULE_SUFFIX}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${arg_MANIFEST}")
  file(READ "${arg_MANIFEST}" statements)
  string(CONFIGURE "${statements}" statements @ONLY)
  set_property(TARGET lv2_bundle APPEND_STRING PROPERTY ONDEX_MANIFEST "${statements}")
  foreach(file IN LISTS arg_DATA)
    configure_file("${file}" "${ONDEX_LV2_BUNDLE}/${file}" COPYONLY)
    install(FILES "${file}" DESTINATION "${ONDEX_LV2_DIR}/ondex.lv2" COMPONENT lv2)
  endforeach()
endfunction()
