# A room is a folder, a static library and an include prefix of the same name.
#
# Its headers are reached as "room/Header.h" through a link that lies in a folder of its own, so a
# room sees the headers of the rooms it is linked to and of no others: the build keeps the floors.
#
#   ondex_room(<room> SOURCES <files> [ROOMS <rooms its headers include>]
#              [PRIVATE_ROOMS <rooms only its sources include>] [LIBS <libraries behind it>] [SMALL])
#
# SMALL is for rooms that no pixel and no sample waits for: they are compiled for size, and what a program or a
# plug-in does not use of them is left out of it. Those of their files that do work for every pixel
# have a level of their own.
function(ondex_room room)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SMALL" "" "SOURCES;ROOMS;PRIVATE_ROOMS;LIBS")
  set(include_dir "${CMAKE_BINARY_DIR}/include/${room}")
  file(MAKE_DIRECTORY "${include_dir}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${include_dir}/${room}" SYMBOLIC)

  add_library(${room} STATIC ${arg_SOURCES})
  target_include_directories(${room} PUBLIC "${include_dir}")
  target_link_libraries(${room} PUBLIC ${arg_ROOMS} PRIVATE ${arg_PRIVATE_ROOMS} ${arg_LIBS})
  # Nothing here throws, and nothing is unwound through a C interface: tables for it would be a quarter of the object.
  target_compile_options(${room} PRIVATE -fno-exceptions)
  if(NOT ONDEX_SANITIZE)
    target_compile_options(${room} PRIVATE -fno-asynchronous-unwind-tables -fno-unwind-tables)
  endif()
  # The plug-in is linked as a whole (see ondex_linked_as_a_whole); test programs use the code beside it.
  target_compile_options(${room} PRIVATE ${ONDEX_FAT_OBJECTS})
  if(arg_SMALL)
    target_compile_options(${room} PRIVATE $<${ONDEX_IS_FAST}:-Oz> -ffunction-sections -fdata-sections)
  endif()
endfunction()

# Links a shared object from the rooms as if they were one file, which makes it a tenth smaller.
function(ondex_linked_as_a_whole target)
  set_target_properties(${target} PROPERTIES ONDEX_LINKED_AS_A_WHOLE ON)
  target_compile_options(${target} PRIVATE ${ONDEX_FAT_OBJECTS})
  target_link_options(${target} PRIVATE "$<${ONDEX_IS_FAST}:-flto=auto;-flto-partition=one;-fno-asynchronous-unwind-tables;-fno-unwind-tables>")
endfunction()

# The tests of one room: a GoogleTest program named <room>_tests, each test known to ctest by its name.
# What several rooms' tests need lies in tests/support and is included by its plain name.
#
#   ondex_tests(<room> SOURCES <files> [ROOMS <rooms>] [LIBS <libraries>] [ONE_AT_A_TIME] [LONG <tests>])
#
# Those that run one at a time and the long ones begin first, so that in the end no processor waits for them.
function(ondex_tests room)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ONE_AT_A_TIME" "" "SOURCES;ROOMS;LIBS;LONG")
  add_executable(${room}_tests ${arg_SOURCES})
  target_link_libraries(${room}_tests PRIVATE ${arg_ROOMS} ${arg_LIBS} test_main)
  set_target_properties(${room}_tests PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_precompile_headers(${room}_tests REUSE_FROM test_main)
  if(arg_ONE_AT_A_TIME)
    set(properties PROPERTIES RESOURCE_LOCK ${room} COST 100)
  endif()
  gtest_discover_tests(${room}_tests DISCOVERY_TIMEOUT 60 ${properties})
  if(arg_LONG)
    # The tests are known only when ctest runs.
    set(costs "${CMAKE_CURRENT_BINARY_DIR}/${room}_costs.cmake")
    file(WRITE "${costs}" "foreach(test ${arg_LONG})
  list(FIND ${room}_tests_TESTS \"\${test}\" place)
  if(place GREATER -1)
    set_tests_properties(\"\${test}\" PROPERTIES COST 200)
  endif()
endforeach()
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${costs}")
  endif()
endfunction()
