tessarelle_add_bench(bench_batch SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_batch.cpp LIBS tessarelle_core)
