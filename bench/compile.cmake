# The course that compile.sh compiles, and the same texts for its peer.
vorel_program(bench_make_texts SOURCES make_texts.cpp USES vorel_course vorel_foundation SQLiteCpp)
