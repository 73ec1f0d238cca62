vorel_program(bench_subtree SOURCES bench_subtree.cpp BenchCourse.h Nobody.h Rounds.h USES vorel_content vorel_seed_data SQLiteCpp)
target_compile_definitions(bench_subtree PRIVATE VOREL_DELIVERED_DATA="${CMAKE_SOURCE_DIR}/sysdata/data")
