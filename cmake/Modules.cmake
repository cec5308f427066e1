# SPDX-License-Identifier: MIT
# A module is a folder, a static library and an include prefix of the same name.
#
# The headers in its folder are public: they are reached as "module/Header.h" by the modules that are linked to it, through
# links that lie in a folder of their own. Those in its folder private/ are reached as "module/private/header.h" by its own
# sources and tests alone. So a module sees the public headers of the modules that it is linked to and nothing else.
#
#   ondex_module(<module> SOURCES <files> [MODULES <modules that its public headers include>]
#              [PRIVATE_MODULES <modules that only its sources include>] [LIBS <libraries behind it>] [SMALL])
#
# SMALL is for modules that no pixel and no sample waits for: they are compiled for size, and what a program or a
# plug-in does not use of them is left out of it. Those of their files that do work for every pixel
# have a level of their own.
function(ondex_module module)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SMALL" "" "SOURCES;MODULES;PRIVATE_MODULES;LIBS")
  set(include_dir "${CMAKE_BINARY_DIR}/include/${module}")
  file(REMOVE_RECURSE "${include_dir}")
  file(MAKE_DIRECTORY "${include_dir}/${module}")
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" *.h)
  foreach(header IN LISTS headers)
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${header}" "${include_dir}/${module}/${header}" SYMBOLIC)
  endforeach()
  set(private_dir "${CMAKE_BINARY_DIR}/private_include/${module}")
  file(MAKE_DIRECTORY "${private_dir}/${module}")
  if(IS_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}/private")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/private" "${private_dir}/${module}/private" SYMBOLIC)
  endif()

  add_library(${module} STATIC ${arg_SOURCES})
  target_include_directories(${module} PUBLIC "${include_dir}" PRIVATE "${private_dir}")
  target_link_libraries(${module} PUBLIC ${arg_MODULES} PRIVATE ${arg_PRIVATE_MODULES} ${arg_LIBS})
  # Nothing here throws, and nothing is unwound through a C interface: tables for it would be a quarter of the object.
  target_compile_options(${module} PRIVATE -fno-exceptions)
  if(NOT ONDEX_SANITIZE)
    target_compile_options(${module} PRIVATE -fno-asynchronous-unwind-tables -fno-unwind-tables)
  endif()
  # The plug-in is linked as a whole (see ondex_linked_as_a_whole); test programs use the code beside it.
  target_compile_options(${module} PRIVATE ${ONDEX_FAT_OBJECTS})
  if(arg_SMALL)
    target_compile_options(${module} PRIVATE $<${ONDEX_IS_FAST}:-Oz> -ffunction-sections -fdata-sections)
  endif()

  set_property(GLOBAL APPEND PROPERTY ONDEX_MODULES ${module})
  file(GLOB private_headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" private/*.h)
  ondex_headers_alone(${module} public "${headers}" ${module})
  ondex_headers_alone(${module} private "${private_headers}" ${module} ${arg_PRIVATE_MODULES} ${arg_LIBS})
endfunction()

# A file for each header that includes nothing else: the target headers_alone, which is no part of a usual build,
# compiles them all. Public headers see what the module gives to others, private ones what its sources see.
function(ondex_headers_alone module kind headers)
  if(NOT headers)
    return()
  endif()
  set(sources "")
  foreach(header IN LISTS headers)
    set(source "${CMAKE_BINARY_DIR}/headers_alone/${module}/${header}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${module}/${header}\"\n")
    list(APPEND sources "${source}")
  endforeach()
  add_library(${module}_${kind}_headers OBJECT EXCLUDE_FROM_ALL ${sources})
  target_link_libraries(${module}_${kind}_headers PRIVATE ${ARGN})
  target_include_directories(${module}_${kind}_headers PRIVATE "$<$<STREQUAL:${kind},private>:${CMAKE_BINARY_DIR}/private_include/${module}>")
  if(NOT TARGET headers_alone)
    add_custom_target(headers_alone)
  endif()
  add_dependencies(headers_alone ${module}_${kind}_headers)
endfunction()

# Links a shared object from the modules as if they were one file, which makes it a tenth smaller.
function(ondex_linked_as_a_whole target)
  set_target_properties(${target} PROPERTIES ONDEX_LINKED_AS_A_WHOLE ON)
  target_compile_options(${target} PRIVATE ${ONDEX_FAT_OBJECTS})
  target_link_options(${target} PRIVATE "$<${ONDEX_IS_FAST}:-flto=auto;-flto-partition=one;-fno-asynchronous-unwind-tables;-fno-unwind-tables>")
endfunction()

# Lets a program that looks at a module from inside, a test of it say, reach its private headers.
function(ondex_private_headers target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "OF")
  foreach(module IN LISTS arg_OF)
    target_include_directories(${target} PRIVATE "${CMAKE_BINARY_DIR}/private_include/${module}")
  endforeach()
endfunction()

# The tests of one module: a GoogleTest program named <module>_tests, each test known to ctest by its name.
# What several modules' tests need lies in tests/support and is included by its plain name.
#
#   ondex_tests(<module> SOURCES <files> [MODULES <modules>] [LIBS <libraries>] [ONE_AT_A_TIME] [LONG <tests>]
#               [PRIVATE_OF <modules>])
#
# They reach the private headers of the module, and of those that are named besides.
# Those that run one at a time and the long ones begin first, so that in the end no processor waits for them.
function(ondex_tests module)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ONE_AT_A_TIME" "" "SOURCES;MODULES;LIBS;LONG;PRIVATE_OF")
  add_executable(${module}_tests ${arg_SOURCES})
  target_link_libraries(${module}_tests PRIVATE ${arg_MODULES} ${arg_LIBS} test_main)
  ondex_private_headers(${module}_tests OF ${module} ${arg_PRIVATE_OF})
  set_target_properties(${module}_tests PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_precompile_headers(${module}_tests REUSE_FROM test_main)
  if(arg_ONE_AT_A_TIME)
    set(properties PROPERTIES RESOURCE_LOCK ${module} COST 100)
  endif()
  gtest_discover_tests(${module}_tests DISCOVERY_TIMEOUT 60 ${properties})
  if(arg_LONG)
    # The tests are known only when ctest runs.
    set(costs "${CMAKE_CURRENT_BINARY_DIR}/${module}_costs.cmake")
    file(WRITE "${costs}" "foreach(test ${arg_LONG})
  list(FIND ${module}_tests_TESTS \"\${test}\" place)
  if(place GREATER -1)
    set_tests_properties(\"\${test}\" PROPERTIES COST 200)
  endif()
endforeach()
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${costs}")
  endif()
endfunction()
