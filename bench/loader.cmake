tessarelle_add_bench(bench_loader SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_loader.cpp LIBS tessarelle_core)
