tessarelle_add_bench(bench_analyses SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_analyses.cpp LIBS tessarelle_core)
