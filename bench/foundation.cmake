vorel_program(bench_files SOURCES bench_files.cpp Rounds.h USES vorel_foundation)
vorel_program(bench_ciphers SOURCES bench_ciphers.cpp Rounds.h USES vorel_foundation OpenSSL::Crypto)
