tessarelle_add_bench(bench_run SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_run.cpp LIBS tessarelle_core)
