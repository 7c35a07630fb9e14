# The building blocks of the house. A floor is a folder below src/, a static library, a namespace.
# tools/lint/floors.py reads the qvrcom_floor() lines of src/CMakeLists.txt and fails on an include that
# goes where no line allows it, so the lines below are the only place where an arrow is drawn.

add_library(qvrcom_settings INTERFACE)
target_include_directories(qvrcom_settings INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(qvrcom_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  # g++ 12 reports a literal joined to a std::string as an overlap when it optimises.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(QVRCOM_SANITIZE OR QVRCOM_FUZZ)
  target_compile_options(qvrcom_settings INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qvrcom_settings INTERFACE -fsanitize=address,undefined)
  if(QVRCOM_FUZZ)
    # Every library tells the fuzzer where it has been: without that an entry would run blind.
    target_compile_options(qvrcom_settings INTERFACE -fsanitize=fuzzer-no-link)
  endif()
elseif(QVRCOM_THREAD_SANITIZE)
  target_compile_options(qvrcom_settings INTERFACE -fsanitize=thread)
  target_link_options(qvrcom_settings INTERFACE -fsanitize=thread)
endif()

# qvrcom_floor(NAME DEPENDS floor... LINKS library...)
function(qvrcom_floor name)
  cmake_parse_arguments(FLOOR "" "" "DEPENDS;LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${name}/*.cpp)
  if(sources)
    add_library(qvrcom_${name} STATIC ${sources})
    set(scope PUBLIC)
  else()
    add_library(qvrcom_${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  list(TRANSFORM FLOOR_DEPENDS PREPEND qvrcom_)
  target_link_libraries(qvrcom_${name} ${scope} qvrcom_settings ${FLOOR_DEPENDS} ${FLOOR_LINKS})
endfunction()

# qvrcom_program(NAME SOURCES file... LINKS library...): one wiring file, one program in bin/.
function(qvrcom_program name)
  cmake_parse_arguments(PROGRAM "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${PROGRAM_SOURCES})
  target_link_libraries(${name} PRIVATE ${PROGRAM_LINKS})
endfunction()

# qvrcom_tests(FOLDER [MAIN file] LINKS library...): tests/FOLDER/*_test.cpp become one test program. MAIN, a
# file below tests/, is its start where that is more than a bare one.
function(qvrcom_tests folder)
  cmake_parse_arguments(TESTS "" "MAIN" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*_test.cpp)
  if(NOT sources)
    return()
  endif()
  set(main GTest::gtest_main)
  if(TESTS_MAIN)
    list(APPEND sources ${CMAKE_SOURCE_DIR}/tests/${TESTS_MAIN})
    set(main GTest::gtest)
  endif()
  add_executable(qvrcom_${folder}_tests ${sources})
  target_link_libraries(qvrcom_${folder}_tests PRIVATE qvrcom_doubles ${TESTS_LINKS} GTest::gmock ${main})
  add_test(NAME ${folder} COMMAND qvrcom_${folder}_tests)
  set_tests_properties(${folder} PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

# qvrcom_fuzz(NAME [SOURCE other] LINKS library...): fuzz/NAME.cpp or fuzz/other.cpp. With QVRCOM_FUZZ it is a
# libFuzzer program, otherwise it is replayed over every stored sample of fuzz/samples/NAME as a test.
function(qvrcom_fuzz name)
  cmake_parse_arguments(FUZZ "" "SOURCE" "LINKS" ${ARGN})
  if(NOT FUZZ_SOURCE)
    set(FUZZ_SOURCE ${name})
  endif()
  if(QVRCOM_FUZZ)
    add_executable(fuzz_${name} ${CMAKE_SOURCE_DIR}/fuzz/${FUZZ_SOURCE}.cpp)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  else()
    add_executable(fuzz_${name} ${CMAKE_SOURCE_DIR}/fuzz/${FUZZ_SOURCE}.cpp ${CMAKE_SOURCE_DIR}/fuzz/replay.cpp)
    add_test(NAME fuzz_${name} COMMAND fuzz_${name} ${CMAKE_SOURCE_DIR}/fuzz/samples/${name})
  endif()
  target_link_libraries(fuzz_${name} PRIVATE ${FUZZ_LINKS})
endfunction()
