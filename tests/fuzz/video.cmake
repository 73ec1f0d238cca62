vorel_fuzz(vorel_fuzz_video SOURCES VideoFuzz.cpp USES vorel_video)
