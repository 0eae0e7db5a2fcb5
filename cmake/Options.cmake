# What every target is compiled with.
option(QUILLBOX_SANITIZE "Build under AddressSanitizer and UBSan, with the libFuzzer targets (clang only)" OFF)
option(QUILLBOX_BENCH "Build the measurements in bench/" OFF)

add_library(quillbox_options INTERFACE)
target_include_directories(quillbox_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
target_compile_options(quillbox_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 takes "text" + std::string&& for overlapping memory (GCC bug 105651).
  target_compile_options(quillbox_options INTERFACE -Wno-restrict)
endif()

if(QUILLBOX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # A precompiled header is good as long as its text is the same, whatever the time of the file.
  add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
endif()

if(WIN32)
  # 0x0501: nothing newer than Windows XP can be called by accident.
  target_compile_definitions(quillbox_options INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX STRICT
    WINVER=0x0501 _WIN32_WINNT=0x0501 _WIN32_IE=0x0600)
  # -static: no compiler DLLs beside the program. 5.1: the oldest system it promises to start on.
  add_link_options(-static
    -Wl,--major-subsystem-version=5,--minor-subsystem-version=1
    -Wl,--major-os-version=5,--minor-os-version=1)
  # The same source gives the same program, wherever and whenever it is built.
  add_link_options(-Wl,--no-insert-timestamp)
  add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
endif()
