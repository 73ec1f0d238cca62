# What a page's size costs in the editor.
if(VOREL_WINDOWS)
  vorel_program(bench_editor SOURCES bench_editor.cpp BenchCourse.h Nobody.h Rounds.h USES vorel_editor_ui vorel_seed_data SQLiteCpp Qt6::Test Qt6::WebEngineWidgets)
  target_compile_definitions(bench_editor PRIVATE VOREL_DELIVERED_DATA="${CMAKE_SOURCE_DIR}/sysdata/data")
endif()
