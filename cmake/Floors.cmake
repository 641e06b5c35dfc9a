# A floor is a folder of src/ with a library target of its own. Its headers are reached through an include
# root that holds nothing but this floor, so that a lower floor cannot include a higher one even by accident.
function(add_floor name)
  cmake_parse_arguments(PARSE_ARGV 1 floor "" "" "ABOVE")
  set(root ${PROJECT_BINARY_DIR}/floors/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${name} ${root}/${name} SYMBOLIC)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  list(TRANSFORM floor_ABOVE PREPEND floor_ OUTPUT_VARIABLE below)
  if(sources)
    add_library(floor_${name} STATIC ${sources})
    target_include_directories(floor_${name} PUBLIC ${root})
    target_link_libraries(floor_${name} PUBLIC ${below} PRIVATE project_warnings)
    set(floors ${floors} floor_${name} PARENT_SCOPE)
  else()
    add_library(floor_${name} INTERFACE)
    target_include_directories(floor_${name} INTERFACE ${root})
    target_link_libraries(floor_${name} INTERFACE ${below})
  endif()
endfunction()

# The code of targets in which nothing is timed is made short: nearly all of it stays in memory once every window has been
# open.
function(keep_short)
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-Os>)
  endforeach()
endfunction()
