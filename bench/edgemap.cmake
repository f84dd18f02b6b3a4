tessarelle_add_bench(bench_edgemap SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_edgemap.cpp LIBS tessarelle_core)
target_compile_definitions(bench_edgemap PRIVATE SOURCE_DIR="${CMAKE_SOURCE_DIR}")
