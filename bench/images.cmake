tessarelle_add_bench(bench_tiffdata SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_tiffdata.cpp LIBS tessarelle_core)
