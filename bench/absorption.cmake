tessarelle_add_bench(bench_absorption SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/bench_absorption.cpp LIBS tessarelle_core)
