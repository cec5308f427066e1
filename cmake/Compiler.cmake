# SPDX-License-Identifier: MIT
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Whoever asks for nothing gets what users run.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Release, RelWithDebInfo or Debug" FORCE)
endif()

# Errors in the presets alone: another compiler may warn of more.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                    -Woverloaded-virtual -Wformat=2)
if(CMAKE_UNITY_BUILD)
  # One file's local names are global to the next when several are compiled as one.
  add_compile_options(-Wno-shadow)
endif()
# The formulas are compared with numbers worked out elsewhere: no fused operations.
add_compile_options(-ffp-contract=off)

if(ONDEX_CGFLOAT_IS_FLOAT)
  add_compile_definitions(ONDEX_CGFLOAT_IS_FLOAT=1)
endif()

# Whether modules and files choose a level of optimisation of their own: what is built to find faults compiles sooner
# without.
set(ONDEX_IS_FAST "$<NOT:$<OR:$<CONFIG:Debug>,$<BOOL:${ONDEX_SANITIZE}>>>")

# Objects that can be linked one by one or as a whole.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(ONDEX_FAT_OBJECTS "$<${ONDEX_IS_FAST}:-flto;-ffat-lto-objects>")
  add_link_options("$<$<NOT:$<BOOL:$<TARGET_PROPERTY:ONDEX_LINKED_AS_A_WHOLE>>>:-fno-lto>")
endif()

if(ONDEX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(ONDEX_BUILD_FUZZERS)
  # The modules are covered too, so that the fuzzer sees which ways its inputs take through them.
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()
