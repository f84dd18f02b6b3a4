tessarelle_add_bench(bench_tools SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_tools.cpp LIBS tessarelle_core)
