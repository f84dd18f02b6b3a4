tessarelle_add_bench(bench_xafs SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_xafs.cpp LIBS tessarelle_core)
