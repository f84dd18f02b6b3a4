tessarelle_add_bench(bench_calib SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_calib.cpp LIBS tessarelle_core)
