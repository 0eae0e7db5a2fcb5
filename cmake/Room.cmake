# quillbox_room(NAME SOURCES... LINKS...): the sources of one folder as a static library. New files
# join by being there; which rooms it may use is said in its CMakeLists.txt and nowhere else.
function(quillbox_room name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC quillbox_options ${ARG_LINKS})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE quillbox_options ${ARG_LINKS})
  endif()
endfunction()
