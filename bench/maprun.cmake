tessarelle_add_bench(bench_maprun SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_maprun.cpp LIBS tessarelle_core)
