tessarelle_add_bench(bench_render SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_render.cpp LIBS tessarelle_core)
