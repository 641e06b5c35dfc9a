# Headers that are compiled once for many sources. With them a source compiles although it lacks an #include of its own,
# so each source is compiled without them as well, in "asan".
set(VELTRANA_PRECOMPILED "" CACHE STRING "Whose headers of the system are precompiled: a list of PROGRAM and TESTS")

if(VELTRANA_PRECOMPILED AND ccache)  # which keeps what was compiled with them only if it is told so
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${ccache})
endif()

set(standard_headers <algorithm> <array> <cmath> <cstddef> <cstdint> <filesystem> <fstream> <functional> <map> <memory>
    <optional> <span> <string> <string_view> <tuple> <utility> <variant> <vector>)

# A library of nothing but precompiled headers: the standard ones and HEADERS, which come with LINK and
# DEFINITIONS, for the targets named, which are compiled with the same options: keep_short is called for them when SHORT is
# said, and for none otherwise. OF says whose they are.
function(precompile name)
  cmake_parse_arguments(PARSE_ARGV 1 precompiled "SHORT" "OF" "HEADERS;LINK;DEFINITIONS;TARGETS")
  if(NOT precompiled_OF IN_LIST VELTRANA_PRECOMPILED)
    return()
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "")
  add_library(${name} STATIC ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE ${precompiled_LINK} project_warnings)
  target_compile_definitions(${name} PRIVATE ${precompiled_DEFINITIONS})
  target_precompile_headers(${name} PRIVATE ${standard_headers} ${precompiled_HEADERS})
  if(precompiled_SHORT)
    keep_short(${name})
  endif()
  foreach(target IN LISTS precompiled_TARGETS)
    target_precompile_headers(${target} REUSE_FROM ${name})
    # g++ 12 takes what it inlines from them no longer for the system's.
    target_compile_options(${target} PRIVATE
                           $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-array-bounds>)
  endforeach()
endfunction()
