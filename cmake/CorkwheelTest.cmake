# SPDX-License-Identifier: GPL-3.0-or-later

# What Qt Test prints for a skipped test function: ctest then counts the test as skipped
# (scripts/check-skips.sh fails CI on a skip that is not expected) instead of as passed.
set(CORKWHEEL_SKIP_OUTPUT "SKIP   : ")

# corkwheel_add_test(<name> SOURCES ... [LIBS ...] [ENV VAR=value ...])
#
# Builds one Qt Test executable, registers it with CTest and gives it the
# environment every Corkwheel test expects: no real display, the C.UTF-8
# locale and UTC unless the test asks for others.
function(corkwheel_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;ENV" ${ARGN})
    corkwheel_add_test_executable(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
    add_test(NAME ${name} COMMAND ${name})
    corkwheel_test_environment(_env ${ARG_ENV})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${_env}" TIMEOUT 120
        SKIP_REGULAR_EXPRESSION "${CORKWHEEL_SKIP_OUTPUT}")
endfunction()

# corkwheel_add_window_manager_test(<name> SOURCES ... [LIBS ...] SESSIONS <session:name> ...
#                                   [WAYLAND])
#
# An end-to-end desktop test, run once under each window manager: <session> is a virtual
# desktop of scripts/in-virtual-desktop.sh, <name> the name that window manager gives itself,
# which the test finds in CORKWHEEL_E2E_WINDOW_MANAGER. Sessions with a desktop icons
# program ("openbox-pcmanfm") set CORKWHEEL_E2E_DESKTOP_ICONS. Each session is a display of
# its own; they run one at a time, as window managers and compositors are slow to start.
# WAYLAND runs it once more, as <name>_sway, under the Wayland compositor where the build
# has layer-shell panels.
function(corkwheel_add_window_manager_test name)
    cmake_parse_arguments(ARG "WAYLAND" "" "SOURCES;LIBS;SESSIONS" ${ARGN})
    corkwheel_add_test_executable(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
    foreach(_session IN LISTS ARG_SESSIONS)
        string(REGEX REPLACE ":.*" "" _desktop "${_session}")
        string(REGEX REPLACE ".*:" "" _manager "${_session}")
        set(_env QT_QPA_PLATFORM=xcb CORKWHEEL_E2E_WINDOW_MANAGER=${_manager})
        if(_desktop MATCHES "-")
            list(APPEND _env CORKWHEEL_E2E_DESKTOP_ICONS=1)
        endif()
        corkwheel_test_environment(_env ${_env})
        add_test(NAME ${name}_${_desktop}
            COMMAND ${PROJECT_SOURCE_DIR}/scripts/in-virtual-desktop.sh ${_desktop} $<TARGET_FILE:${name}>)
        set_tests_properties(${name}_${_desktop} PROPERTIES ENVIRONMENT "${_env}"
            RESOURCE_LOCK windowmanagers TIMEOUT 300
            SKIP_REGULAR_EXPRESSION "${CORKWHEEL_SKIP_OUTPUT}")
    endforeach()
    get_property(_layer_shell GLOBAL PROPERTY CORKWHEEL_LAYER_SHELL)
    if(ARG_WAYLAND AND _layer_shell)
        corkwheel_register_wayland_test(${name}_sway ${name})
    endif()
endfunction()

# corkwheel_add_wayland_test(<name> SOURCES ... [LIBS ...])
#
# An end-to-end test on a headless Wayland desktop of its own (sway, which
# scripts/in-wayland-desktop.sh starts), itself a client of Qt's Wayland platform.
function(corkwheel_add_wayland_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    corkwheel_add_test_executable(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
    corkwheel_register_wayland_test(${name} ${name})
endfunction()

# Registers the test executable <target> as the CTest test <name> on the Wayland desktop.
function(corkwheel_register_wayland_test name target)
    # As the application sets it for itself (DisplaySession).
    corkwheel_test_environment(_env QT_QPA_PLATFORM=wayland QT_WAYLAND_DISABLE_FIXED_POSITIONS=1)
    add_test(NAME ${name}
        COMMAND ${PROJECT_SOURCE_DIR}/scripts/in-wayland-desktop.sh $<TARGET_FILE:${target}>)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${_env}" TIMEOUT 300
        SKIP_REGULAR_EXPRESSION "${CORKWHEEL_SKIP_OUTPUT}")
endfunction()

# corkwheel_add_gnome_test(<name> SOURCES ... [LIBS ...])
#
# An end-to-end test in a headless GNOME Shell session on Wayland of its own, which
# scripts/in-gnome-desktop.sh starts and runs the test in, as the session's user. The test
# is an X11 client of the session's Xwayland. GNOME Shell is slow to start, so it never runs
# beside the window manager tests.
function(corkwheel_add_gnome_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    corkwheel_add_test_executable(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
    corkwheel_test_environment(_env QT_QPA_PLATFORM=xcb)
    add_test(NAME ${name}
        COMMAND ${PROJECT_SOURCE_DIR}/scripts/in-gnome-desktop.sh $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${_env}"
        RESOURCE_LOCK windowmanagers TIMEOUT 300
        SKIP_REGULAR_EXPRESSION "${CORKWHEEL_SKIP_OUTPUT}")
endfunction()

# corkwheel_add_kwin_test(<name> SOURCES ... [LIBS ...] [PLASMA])
#
# An end-to-end test in a headless KWin session on Wayland of its own, Plasma's compositor,
# which scripts/in-kwin-desktop.sh starts and runs the test in, as the session's user; with
# PLASMA, Plasma's shell runs there too. The test is itself a client of Qt's Wayland
# platform.
function(corkwheel_add_kwin_test name)
    cmake_parse_arguments(ARG "PLASMA" "" "SOURCES;LIBS" ${ARGN})
    corkwheel_add_test_executable(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
    if(ARG_PLASMA)
        corkwheel_register_kwin_test(${name} ${name} PLASMA)
    else()
        corkwheel_register_kwin_test(${name} ${name})
    endif()
endfunction()

# corkwheel_register_kwin_test(<name> <target> [OUTPUTS <count>] [PLASMA])
#
# Registers the test executable <target> as the CTest test <name> in a KWin session with
# <count> outputs side by side (one unless given), and Plasma's shell with PLASMA.
function(corkwheel_register_kwin_test name target)
    cmake_parse_arguments(ARG "PLASMA" "OUTPUTS" "" ${ARGN})
    if(NOT ARG_OUTPUTS)
        set(ARG_OUTPUTS 1)
    endif()
    set(_session --outputs ${ARG_OUTPUTS})
    if(ARG_PLASMA)
        list(APPEND _session --plasma)
    endif()
    # As the application sets it for itself (DisplaySession).
    corkwheel_test_environment(_env QT_QPA_PLATFORM=wayland QT_WAYLAND_DISABLE_FIXED_POSITIONS=1)
    add_test(NAME ${name}
        COMMAND ${PROJECT_SOURCE_DIR}/scripts/in-kwin-desktop.sh ${_session}
            $<TARGET_FILE:${target}>)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${_env}" TIMEOUT 300
        SKIP_REGULAR_EXPRESSION "${CORKWHEEL_SKIP_OUTPUT}")
endfunction()

function(corkwheel_add_test_executable name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE corkwheel_testsupport corkwheel_options ${ARG_LIBS})
    # The code under test is built as it ships; the test's own code is not worth optimising,
    # which takes most of a test's build time.
    target_compile_options(${name} PRIVATE -O0)
    target_compile_definitions(${name} PRIVATE
        CORKWHEEL_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
        CORKWHEEL_TEST_CATALOGUE_DIR="${CORKWHEEL_TRANSLATIONS_OUTPUT_DIR}")
    # The compiled catalogues, which a test loads as Corkwheel does and the binary finds
    # beside itself.
    add_dependencies(${name} corkwheel_catalogues)
endfunction()

# What every test runs with, VAR=value overrides first: no real display, the C.UTF-8 locale
# and UTC unless the test asks for others.
function(corkwheel_test_environment out)
    set(_env QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 TZ=UTC
        ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
        LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp
        UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1)
    foreach(_override IN LISTS ARGN)
        string(REGEX REPLACE "=.*" "" _key "${_override}")
        list(FILTER _env EXCLUDE REGEX "^${_key}=")
        list(APPEND _env "${_override}")
    endforeach()
    set(${out} "${_env}" PARENT_SCOPE)
endfunction()

# corkwheel_add_webengine_test(<name> SOURCES ... [LIBS ...])
#
# A test that loads the web engine plugin, whose path it gets as CORKWHEEL_WEBENGINE_PLUGIN.
# Root may run the tests, and the web engine's sandbox refuses to start as root. Chromium
# inside the web engine trips AddressSanitizer's delete-size and leak checks in its own
# code, which is not ours to fix.
function(corkwheel_add_webengine_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    corkwheel_add_test(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS}
        ENV QTWEBENGINE_DISABLE_SANDBOX=1 "QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu"
            ASAN_OPTIONS=new_delete_type_mismatch=0:detect_leaks=0)
    target_compile_definitions(${name} PRIVATE
        CORKWHEEL_WEBENGINE_PLUGIN="$<TARGET_FILE:corkwheel-webengine>")
    add_dependencies(${name} corkwheel-webengine)
endfunction()
