find_package(GTest REQUIRED)
vorel_program(bench_subtree SOURCES bench_subtree.cpp Rounds.h USES vorel_content SQLiteCpp GTest::gtest)
target_compile_definitions(bench_subtree PRIVATE VOREL_DELIVERED_DATA="${CMAKE_SOURCE_DIR}/sysdata/data")
