vorel_program(bench_store SOURCES bench_store.cpp USES vorel_course vorel_seed_data SQLite::SQLite3
              OpenSSL::Crypto)
vorel_program(bench_tree_ops SOURCES bench_tree_ops.cpp USES vorel_course vorel_seed_data)
