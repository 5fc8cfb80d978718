# SPDX-License-Identifier: GPL-3.0-or-later

# Flags live on INTERFACE targets so every Corkwheel target opts in the same way.

add_library(corkwheel_options INTERFACE)
target_compile_features(corkwheel_options INTERFACE cxx_std_20)
target_compile_options(corkwheel_options INTERFACE -Wall -Wextra -Wpedantic)
if(CORKWHEEL_WERROR)
    target_compile_options(corkwheel_options INTERFACE -Werror)
endif()
target_compile_definitions(corkwheel_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
target_include_directories(corkwheel_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

add_library(corkwheel_sanitizers INTERFACE)
if(CORKWHEEL_SANITIZE)
    # GCC leaves a double converted into an integer it does not fit out of "undefined".
    set(_sanitize_flags -fsanitize=address,undefined,float-cast-overflow
        -fno-omit-frame-pointer -fno-sanitize-recover=undefined,float-cast-overflow)
    target_compile_options(corkwheel_sanitizers INTERFACE ${_sanitize_flags})
    target_link_options(corkwheel_sanitizers INTERFACE ${_sanitize_flags})
endif()
# For the libFuzzer targets (tests/fuzz) everything they link carries the fuzzer's coverage
# instrumentation and AddressSanitizer (with LeakSanitizer) and UndefinedBehaviorSanitizer,
# each of whose reports ends the run as a crash. Only the fuzz targets link libFuzzer itself
# (-fsanitize=fuzzer), as it brings its own main().
if(CORKWHEEL_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "CORKWHEEL_BUILD_FUZZERS needs clang: -DCMAKE_CXX_COMPILER=clang++")
    endif()
    set(_fuzz_sanitize_flags -fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_compile_options(corkwheel_sanitizers INTERFACE ${_fuzz_sanitize_flags}
        -fsanitize=fuzzer-no-link)
    target_link_options(corkwheel_sanitizers INTERFACE ${_fuzz_sanitize_flags})
endif()
target_link_libraries(corkwheel_options INTERFACE corkwheel_sanitizers)
