vorel_program(bench_import SOURCES bench_import.cpp BenchCourse.h Nobody.h Rounds.h USES vorel_content vorel_seed_data SQLiteCpp)
target_compile_definitions(bench_import PRIVATE VOREL_DELIVERED_DATA="${CMAKE_SOURCE_DIR}/sysdata/data")
