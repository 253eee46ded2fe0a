# Helpers that give every target of the project the same warnings, sanitizers and include root.

add_library(kv_options INTERFACE)
target_compile_options(kv_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                            -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC bug 105651: optimised string concatenation is taken for overlapping copies.
  target_compile_options(kv_options INTERFACE -Wno-restrict)
endif()
if(KV_WERROR)
  target_compile_options(kv_options INTERFACE -Werror)
endif()
if(KV_SANITIZE)
  target_compile_options(kv_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                              -fno-sanitize-recover=all)
  target_link_options(kv_options INTERFACE -fsanitize=address,undefined)
endif()
if(KV_BUILD_FUZZERS)
  # Counts the edges that a run takes; each fuzz target links the fuzzer itself (fuzz/).
  target_compile_options(kv_options INTERFACE -fsanitize=fuzzer-no-link)
  target_compile_definitions(kv_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()

# kv_library(<name> SOURCES ... [LINK ...] [QT])
#
# A static library of one room. Headers are included as "<folder>/<file>.h", and a room only sees
# the include roots of what it links, so that a wrong include does not compile: each room's headers
# are published through a directory of its own that holds one link to the room's folder.
# QT marks a room's window and platform files: moc runs, and Qt's keyword macros are off.
function(kv_library name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  get_filename_component(room ${CMAKE_CURRENT_SOURCE_DIR} NAME)
  set(root ${PROJECT_BINARY_DIR}/include/${room})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${room} SYMBOLIC)
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PRIVATE kv_options PUBLIC ${ARG_LINK})
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${name} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
  endif()
endfunction()

# kv_test(<name> SOURCES ... [LINK ...] [QT])
#
# One test program, every case of it a ctest entry. QT programs run on the offscreen platform.
function(kv_test name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE kv_options ${ARG_LINK} GTest::gtest GTest::gmock)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  set(environment "")
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
    set(environment "QT_QPA_PLATFORM=offscreen")
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 120 ENVIRONMENT "${environment}")
endfunction()
