# A room is one folder under src/, one static library and one folder of tests. The table in
# src/README.md says which room may use which; tests/project checks every #include against it.

# lumirra_room(NAME [USES room...] [LINKS library...] [MODULES folder...]): the folders in MODULES are
# left out of the room's library, see lumirra_module.
function(lumirra_room name)
  cmake_parse_arguments(ROOM "" "" "USES;LINKS;MODULES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  # the program's own start-up is no part of the library that tests link
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  foreach(folder IN LISTS ROOM_MODULES)
    list(FILTER sources EXCLUDE REGEX "/src/${name}/${folder}/")
  endforeach()
  add_library(lumirra_${name} STATIC ${sources})
  set_target_properties(lumirra_${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(lumirra_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  list(TRANSFORM ROOM_USES PREPEND lumirra_)
  target_link_libraries(lumirra_${name} PUBLIC ${ROOM_USES} ${ROOM_LINKS})
endfunction()

# lumirra_module(ROOM FOLDER [USES room...] [LINKS library...]): a folder of the room as the library
# lumirra-FOLDER.so, which the room opens when it first needs it, so that what it links costs nothing
# before. Module.cpp in it is the way in; the rest is also the static library lumirra_FOLDER_code,
# for tests. Whatever links the room finds the module by its run path.
function(lumirra_module room folder)
  cmake_parse_arguments(MODULE "" "" "USES;LINKS" ${ARGN})
  list(TRANSFORM MODULE_USES PREPEND lumirra_)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h)
  list(FILTER sources EXCLUDE REGEX "/Module\\.cpp$")
  add_library(lumirra_${folder}_code STATIC ${sources})
  target_link_libraries(lumirra_${folder}_code PUBLIC ${MODULE_USES} ${MODULE_LINKS})
  add_library(lumirra_${folder} MODULE ${folder}/Module.cpp)
  target_link_libraries(lumirra_${folder} PRIVATE lumirra_${folder}_code)
  target_link_options(lumirra_${folder} PRIVATE -Wl,--exclude-libs,ALL)
  set_target_properties(lumirra_${folder} PROPERTIES
    PREFIX "" OUTPUT_NAME lumirra-${folder} LIBRARY_OUTPUT_DIRECTORY ${LUMIRRA_MODULE_DIR}
    BUILD_RPATH "" INSTALL_RPATH "")
  # Nothing of ours is looked up by name at run time: code for a library costs no more than other.
  set_target_properties(${MODULE_USES} lumirra_${folder}_code lumirra_${folder} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  set_property(TARGET lumirra_${room} APPEND PROPERTY INTERFACE_LINK_DEPENDS
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_FILE:lumirra_${folder}>>)
  install(TARGETS lumirra_${folder} DESTINATION ${CMAKE_INSTALL_LIBDIR}/lumirra)
endfunction()

# lumirra_installed(TARGET): one of the programs that people start.
function(lumirra_installed target)
  set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
  install(TARGETS ${target})
endfunction()

# lumirra_room_tests(NAME [MAIN file] [LINKS library...] [PROPERTIES test property...]
# [WITHOUT file...]): all *.cpp of the calling folder, but those in WITHOUT, as one test program that
# links the room's library alone. tests/support holds what tests of several rooms share, also the main
# functions (MAIN, main.cpp unless given).
function(lumirra_room_tests name)
  cmake_parse_arguments(ROOM "" "MAIN" "LINKS;PROPERTIES;WITHOUT" ${ARGN})
  if(NOT ROOM_MAIN)
    set(ROOM_MAIN main.cpp)
  endif()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(REMOVE_ITEM sources ${ROOM_WITHOUT})
  add_executable(test_${name} ${sources} ${PROJECT_SOURCE_DIR}/tests/support/${ROOM_MAIN})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  # Tests gain nothing from more, and it takes a third of their compiling.
  target_compile_options(test_${name} PRIVATE -O1)
  target_link_libraries(test_${name} PRIVATE lumirra_${name} GTest::gtest GTest::gmock
                                             ${ROOM_LINKS})
  target_compile_definitions(test_${name} PRIVATE
    LUMIRRA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    LUMIRRA_MEDIA_DIR="${LUMIRRA_TEST_MEDIA}")
  add_dependencies(test_${name} test_media)
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 120
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen" ${ROOM_PROPERTIES})
endfunction()
