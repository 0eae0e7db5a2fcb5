# quillbox_room(NAME [LINKS rooms...] [EXCLUDE regex]): the sources of one folder as a static library. New
# files join by being there, but for those whose path matches EXCLUDE; which rooms it may use is said in
# its CMakeLists.txt and nowhere else.
function(quillbox_room name)
  cmake_parse_arguments(ARG "" "EXCLUDE" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(ARG_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${ARG_EXCLUDE}")
  endif()
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC quillbox_options ${ARG_LINKS})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE quillbox_options ${ARG_LINKS})
  endif()
endfunction()
