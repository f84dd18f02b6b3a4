tessarelle_add_bench(bench_loader SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_loader.cpp LIBS tessarelle_core)
tessarelle_add_bench(bench_h5load SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_h5load.cpp LIBS tessarelle_core)
