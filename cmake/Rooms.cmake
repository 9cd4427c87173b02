# A room is one folder under src/, one static library and one folder of tests. The table in
# src/README.md says which room may use which; tests/project checks every #include against it.

# lumirra_room(NAME [USES room...] [LINKS library...])
function(lumirra_room name)
  cmake_parse_arguments(ROOM "" "" "USES;LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  # the program's own start-up is no part of the library that tests link
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(lumirra_${name} STATIC ${sources})
  set_target_properties(lumirra_${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(lumirra_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  list(TRANSFORM ROOM_USES PREPEND lumirra_)
  target_link_libraries(lumirra_${name} PUBLIC ${ROOM_USES} ${ROOM_LINKS})
endfunction()

# lumirra_room_tests(NAME [MAIN file] [LINKS library...] [PROPERTIES test property...]): all *.cpp of
# the calling folder as one test program that links the room's library alone. tests/support holds
# what tests of several rooms share, also the main functions (MAIN, main.cpp unless given).
function(lumirra_room_tests name)
  cmake_parse_arguments(ROOM "" "MAIN" "LINKS;PROPERTIES" ${ARGN})
  if(NOT ROOM_MAIN)
    set(ROOM_MAIN main.cpp)
  endif()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_executable(test_${name} ${sources} ${PROJECT_SOURCE_DIR}/tests/support/${ROOM_MAIN})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE lumirra_${name} GTest::gtest GTest::gmock
                                             ${ROOM_LINKS})
  target_compile_definitions(test_${name} PRIVATE
    LUMIRRA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    LUMIRRA_MEDIA_DIR="${PROJECT_SOURCE_DIR}/../shared/media")
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 120
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen" ${ROOM_PROPERTIES})
endfunction()
