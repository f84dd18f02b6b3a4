tessarelle_add_bench(bench_mainview SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_mainview.cpp LIBS tessarelle_gui)
