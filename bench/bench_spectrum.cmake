tessarelle_add_bench(bench_spectrum SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_spectrum.cpp LIBS tessarelle_core)
