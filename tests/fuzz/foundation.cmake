vorel_fuzz(fuzz_ini SOURCES fuzz_ini.cpp USES vorel_foundation)
vorel_fuzz(fuzz_ciphers SOURCES fuzz_ciphers.cpp USES vorel_foundation)
vorel_fuzz(fuzz_paths SOURCES fuzz_paths.cpp USES vorel_foundation)
