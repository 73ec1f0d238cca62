vorel_fuzz(vorel_fuzz_node_info SOURCES NodeInfoFuzz.cpp USES vorel_content)
