vorel_program(bench_resource_text SOURCES bench_resource_text.cpp Rounds.h USES vorel_editor)
