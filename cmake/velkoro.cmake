# One static library per folder. Every .cpp of the folder belongs to it, so that a new file needs no line here.
# HOT: property tests and round trips spend their time here, so the sanitized build optimises it; tests, windows and
# commands compile in half the time without.
#   velkoro_folder(coords HOT USES core)
function(velkoro_folder name)
  cmake_parse_arguments(arg "HOT" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(velkoro_${name} STATIC ${sources})
    set(scope PUBLIC)
    if(arg_HOT AND VELKORO_SANITIZE)
      target_compile_options(velkoro_${name} PRIVATE -O1)
    endif()
  else() # a folder that holds headers only, so far
    add_library(velkoro_${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(velkoro_${name} ${scope} ${PROJECT_SOURCE_DIR})
  foreach(lower ${arg_USES})
    target_link_libraries(velkoro_${name} ${scope} velkoro_${lower})
  endforeach()
endfunction()

# One test program per folder of tests/, from its *_test.cpp. It runs in two halves at once: a process for each test would
# take longer to start than to run.
#   velkoro_tests(core USES core)
function(velkoro_tests name)
  cmake_parse_arguments(arg "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name}_tests ${sources})
  target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_definitions(${name}_tests PRIVATE VELKORO_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                   VELKORO_BINARY_DIR="${PROJECT_BINARY_DIR}")
  foreach(lower ${arg_USES})
    target_link_libraries(${name}_tests PRIVATE velkoro_${lower})
  endforeach()
  target_link_libraries(${name}_tests PRIVATE GTest::gtest GTest::gtest_main)
  foreach(half 0 1)
    add_test(NAME ${name}_tests.${half} COMMAND ${name}_tests --gtest_brief=1)
    set_tests_properties(${name}_tests.${half} PROPERTIES TIMEOUT 600
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${half}")
  endforeach()
endfunction()
