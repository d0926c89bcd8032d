# SPDX-License-Identifier: MIT
# One function a kind of target. They keep the floors apart: a library's public include directory
# shows its own folder and nothing else, so an include that is not covered by a link does not build.

# -Wrestrict misfires in GCC 12 on "literal" + std::string at -O3. A release is what users build, with
# whatever compiler they have: there no warning keeps them from their debugger.
add_library(brevant_warnings INTERFACE)
target_compile_options(brevant_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  -Woverloaded-virtual -Wimplicit-fallthrough $<$<NOT:$<CONFIG:Release>>:-Werror>)

# brevant_library(NAME FOLDER LINKS...): every source of FOLDER except main.cpp, as library NAME.
# Headers are included as "FOLDER/header.h".
function(brevant_library name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  # Where several files are compiled as one (the presets check and release), those that all name their
  # table kActions or kCommands stay apart.
  set(alone ${sources})
  list(FILTER alone INCLUDE REGEX "/commands_[a-z_]*\\.cpp$")
  set_source_files_properties(${alone} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  if(sources)
    add_library(${name} STATIC ${sources})
    set(scope PUBLIC)
    target_link_libraries(${name} PRIVATE brevant_warnings)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  set(view ${CMAKE_BINARY_DIR}/include/${name})
  get_filename_component(parent ${view}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)
  target_include_directories(${name} ${scope} ${view})
  target_link_libraries(${name} ${scope} ${ARGN})
endfunction()

# brevant_program(NAME LINKS...): main.cpp of the current folder as program NAME.
function(brevant_program name)
  if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/main.cpp)
    return()
  endif()
  add_executable(${name} main.cpp)
  target_link_libraries(${name} PRIVATE brevant_warnings ${ARGN})
  target_compile_definitions(${name} PRIVATE
    BREVANT_VERSION="${PROJECT_VERSION}"
    BREVANT_APP_ID="${BREVANT_APP_ID}")
endfunction()

# brevant_tests(FOLDER LINKS...): every *_test.cpp of tests/FOLDER as one test program.
function(brevant_tests folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${folder}_tests ${sources})
  target_include_directories(${folder}_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${folder}_tests PRIVATE brevant_warnings GTest::gtest GTest::gmock
                                                GTest::gtest_main ${ARGN})
  target_compile_definitions(${folder}_tests PRIVATE
    BREVANT_TEST_DATA="${PROJECT_SOURCE_DIR}/tests"
    BREVANT_BIN="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  gtest_discover_tests(${folder}_tests TEST_PREFIX ${folder}. DISCOVERY_MODE PRE_TEST
                       PROPERTIES TIMEOUT 120)
endfunction()
