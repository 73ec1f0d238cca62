# What open.sh opens, and what the least costs.
vorel_program(bench_make_courses SOURCES make_courses.cpp Nobody.h USES vorel_content vorel_server SQLiteCpp)
if(VOREL_WINDOWS)
  vorel_program(bench_names_tree SOURCES names_tree.cpp USES Qt6::Widgets SQLiteCpp)
endif()
