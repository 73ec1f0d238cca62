# One function for each kind of target, so that a folder's CMakeLists.txt only names its files and floors.

# vorel_library(NAME SOURCES a.cpp a.h ... [USES lower floors] [PRIVATE_USES libraries])
function(vorel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC vorel_settings Qt6::Core ${ARG_USES} PRIVATE ${ARG_PRIVATE_USES})
endfunction()

# vorel_ui_library(...): the same for a library with windows; its Q_OBJECT classes go through moc.
function(vorel_ui_library name)
  vorel_library(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PUBLIC Qt6::Widgets)
endfunction()

# vorel_program(NAME SOURCES ... USES ...); it loads only the libraries of the floors that it really calls.
function(vorel_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE vorel_settings Qt6::Core ${ARG_USES})
  target_link_options(${name} PRIVATE -Wl,--as-needed)
endfunction()

# A program with windows loads libraries that are built without sanitizers: plug-ins keep memory behind their unloading,
# and the browser engine frees with another allocator's sizes. Leaks of the system's own are found by the logic's tests.
if(VOREL_SANITIZE)
  set(vorel_window_sanitizing "ASAN_OPTIONS=detect_leaks=0:new_delete_type_mismatch=0:detect_stack_use_after_return=0")
endif()

# What a window test runs under: a display and a window manager of its own, so that two of them may run at once and neither
# has the other's focus, clipboard or mouse. The time limit is the shorter one: what it ends leaves nothing running.
set(vorel_on_display "${CMAKE_SOURCE_DIR}/scripts/with-display.sh" timeout -k 5 290)

# vorel_test(NAME SOURCES ... USES ... [WINDOWS] [ALONE] [COST seconds]): one GoogleTest program, one CTest test.
# WINDOWS marks a test that opens real windows: it is labelled so. All others are labelled "logic". ALONE: it measures
# times, so that nothing else may run meanwhile. COST: what takes long begins first.
function(vorel_test name)
  cmake_parse_arguments(ARG "WINDOWS;ALONE" "COST" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE vorel_settings Qt6::Core ${ARG_USES} vorel_test_support GTest::gtest
                                        GTest::gmock)
  if(ARG_WINDOWS)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    add_test(NAME ${name} COMMAND ${vorel_on_display} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES LABELS windows ENVIRONMENT "${vorel_window_sanitizing}")
  else()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS logic)
    if(NOT VOREL_LOGIC_TESTS)
      set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    endif()
  endif()
  vorel_test_times(${name} ${ARG_ALONE} "${ARG_COST}")
endfunction()

function(vorel_test_times name alone cost)
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  if(alone)
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
  endif()
  if(cost)
    set_tests_properties(${name} PROPERTIES COST ${cost})
  endif()
endfunction()

# vorel_fuzz(NAME SOURCES fuzz_x.cpp USES ...): a libFuzzer target when VOREL_FUZZ is on. Otherwise the same
# entry point is driven over generated and damaged inputs by the test support, as a plain CTest test.
# Seeds lie in tests/fuzz/seeds/NAME.
function(vorel_fuzz name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  set(seeds "${CMAKE_SOURCE_DIR}/tests/fuzz/seeds/${name}")
  if(VOREL_FUZZ)
    add_executable(${name} ${ARG_SOURCES})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  else()
    add_executable(${name} ${ARG_SOURCES} "${CMAKE_SOURCE_DIR}/tests/support/FuzzMain.cpp")
    add_test(NAME ${name} COMMAND ${name} 3000 "${seeds}")
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS "logic;fuzz")
    if(NOT VOREL_LOGIC_TESTS)
      set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    endif()
  endif()
  target_link_libraries(${name} PRIVATE vorel_settings Qt6::Core ${ARG_USES})
endfunction()
