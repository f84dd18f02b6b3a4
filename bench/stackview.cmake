tessarelle_add_bench(bench_stackview SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_stackview.cpp LIBS tessarelle_gui)
