# One interface target carries the language level, the warnings and the
# sanitizer switch; every library, executable, test and benchmark links it.
add_library(tessarelle_common INTERFACE)
target_compile_features(tessarelle_common INTERFACE cxx_std_17)
set(CMAKE_CXX_EXTENSIONS OFF)
target_compile_options(tessarelle_common INTERFACE -Wall -Wextra)
target_compile_definitions(tessarelle_common INTERFACE
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_USE_QSTRINGBUILDER)

if(TESSARELLE_SANITIZE)
  target_compile_options(tessarelle_common INTERFACE
    -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(tessarelle_common INTERFACE -fsanitize=address,undefined)
endif()

# Fuzzing instruments everything for coverage and checks memory on the way;
# the fuzz targets themselves link libFuzzer's main (fuzz/CMakeLists.txt).
if(TESSARELLE_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "TESSARELLE_FUZZ needs clang (libFuzzer), e.g. -DCMAKE_CXX_COMPILER=clang++-14")
  endif()
  target_compile_options(tessarelle_common INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(tessarelle_common INTERFACE -fsanitize=address,undefined)
endif()
