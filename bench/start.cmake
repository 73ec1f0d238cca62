# The least that a window costs, for start.sh.
if(VOREL_WINDOWS)
  vorel_program(bench_empty_window SOURCES empty_window.cpp USES Qt6::Widgets)
endif()
