# Flags that every target shares, and the library itself in one build per processor target.

# The instruction sets of the builds. No product is fused, which would have other bits: -ffp-contract=off keeps the
# compiler from it.
set(ZIMCC_FLAGS_mx -msse2 -mno-sse3 -mno-avx)
set(ZIMCC_FLAGS_v3 -march=x86-64-v3 -mno-fma)
set(ZIMCC_FLAGS_v4 -march=x86-64-v4)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # What its own intrinsics leave undefined on purpose, g++ 12 warns of.
  list(APPEND ZIMCC_FLAGS_v4 -Wno-uninitialized -Wno-maybe-uninitialized)
endif()

set(ZIMCC_WARNINGS -Wall -Wextra -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Vector registers as template arguments lose may_alias, which plays no part there.
  list(APPEND ZIMCC_WARNINGS -Wno-ignored-attributes)
endif()
if(ZIMCC_WERROR)
  list(APPEND ZIMCC_WARNINGS -Werror)
endif()

# What whoever opens teams of threads links to; without OpenMP nothing, and teams are of one (frame/team.h).
add_library(zimcc_threads INTERFACE)
if(ZIMCC_OPENMP)
  find_package(OpenMP REQUIRED COMPONENTS CXX)
  target_link_libraries(zimcc_threads INTERFACE OpenMP::OpenMP_CXX)
endif()

# C++20, exact floating point, warnings, sanitizers.
function(zimcc_configure target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-ffp-contract=off> $<$<COMPILE_LANGUAGE:CXX>:${ZIMCC_WARNINGS}>)
  if(ZIMCC_SANITIZE)
    target_compile_options(${target} PRIVATE
      $<$<COMPILE_LANGUAGE:CXX>:-fsanitize=${ZIMCC_SANITIZE}> $<$<COMPILE_LANGUAGE:CXX>:-fno-sanitize-recover=all>
      $<$<COMPILE_LANGUAGE:CXX>:-fno-omit-frame-pointer>
      # In the lanes, all inlined, the checks of pointer offsets and of sizes of objects take most of the compiler's time;
      # what goes out of bounds the address sanitizer sees.
      $<$<COMPILE_LANGUAGE:CXX>:-fno-sanitize=pointer-overflow,object-size>)
    # Whatever links to an instrumented library needs the sanitizer's runtime, too.
    target_link_options(${target} PUBLIC -fsanitize=${ZIMCC_SANITIZE})
  endif()
endfunction()

# A shared library whose exports are exactly those of a version script, or on Windows of a module definition file.
function(zimcc_configure_shared target version_script module_definition)
  zimcc_configure(${target})
  if(WIN32)
    zimcc_configure_dll(${target} ${module_definition})
    return()
  endif()
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${version_script})
  target_link_options(${target} PRIVATE -Wl,--version-script=${version_script})
endfunction()

if(WIN32)
  include(cmake/zimcc_windows.cmake)
endif()

set(ZIMCC_SOURCES
  demosaic/adaptive_homogeneity.cpp
  demosaic/cfa_interpolation.cpp
  frame/entry.cpp
  frame/scratch.cpp
  frame/stubs.S
  frame/version.cpp
  lumachroma/decoders.cpp
  lumachroma/dithered.cpp
  lumachroma/encoders.cpp
  lumachroma/full_resolution.cpp
  lumachroma/packed_encoders.cpp
  lumachroma/packed_targets.cpp
  lumachroma/ycocg.cpp
  models/gray.cpp
  models/hls.cpp
  models/hsv.cpp
  models/lab.cpp
  models/luv.cpp
  models/xyz.cpp
  models/ycc.cpp
  reduce/error_diffusion.cpp
  reduce/noise.cpp
  reduce/one_bit.cpp
  reduce/reduce_bits.cpp
  reformat/filtered.cpp
  reformat/interlaced.cpp
  reformat/plain.cpp
  tone/color_twist.cpp
  tone/gamma.cpp
  tone/tone_mapping.cpp)
if(WIN32)
  list(APPEND ZIMCC_SOURCES frame/pow_windows.S)
endif()

# Of these the v4 build has the code for v3: as many rows at once as a register of v4 has lanes take longer.
set(ZIMCC_SOURCES_AS_V3 reduce/error_diffusion.cpp reduce/one_bit.cpp)

# Options and headers of the library's sources, compiled for a processor target.
function(zimcc_compile_for target level)
  # Kernels are vector code as they stand: more than -O2 only copies their loops.
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${ZIMCC_FLAGS_${level}}> $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CONFIG:Release>>:-O2>)
  target_include_directories(${target}
    PRIVATE ${PROJECT_SOURCE_DIR}
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${target} PUBLIC zimcore PRIVATE zimcc_threads)
endfunction()

# The library for one processor target: zimcc for the baseline, zimcc_v3 for x86-64-v3 and so on. Those beyond the
# baseline lie where the loader looks for them first, in the build tree as where they are installed.
function(zimcc_add_library level)
  if(level STREQUAL "mx")
    set(target zimcc)
    set(folder)
  else()
    set(target zimcc_${level})
    set(folder glibc-hwcaps/x86-64-${level})
  endif()
  set(sources ${ZIMCC_SOURCES})
  if(level STREQUAL "v4")
    list(REMOVE_ITEM sources ${ZIMCC_SOURCES_AS_V3})
    add_library(${target}_as_v3 OBJECT ${ZIMCC_SOURCES_AS_V3})
    zimcc_configure(${target}_as_v3)
    zimcc_compile_for(${target}_as_v3 v3)
    target_compile_definitions(${target}_as_v3 PRIVATE ZIM_TARGET_PREFIX=v4_)
    set_target_properties(${target}_as_v3 PROPERTIES
      POSITION_INDEPENDENT_CODE ON
      CXX_VISIBILITY_PRESET hidden
      VISIBILITY_INLINES_HIDDEN ON)
    list(APPEND sources $<TARGET_OBJECTS:${target}_as_v3>)
  endif()
  add_library(${target} SHARED ${sources})
  zimcc_configure_shared(${target} ${PROJECT_SOURCE_DIR}/frame/zimcc.map ${PROJECT_BINARY_DIR}/zimcc.def)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME zimcc
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib/${folder})
  zimcc_compile_for(${target} ${level})
  # Beside the library, or above its folder for the processor's own build.
  if(folder)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/../..")
    # Whoever builds the baseline gets the others, so that the loader finds them beside it.
    add_dependencies(zimcc ${target})
  else()
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
endfunction()
