# SPDX-License-Identifier: GPL-3.0-or-later

# What a user gets besides the targets' own install rules, and the Debian package of it all.
# Included after the targets, whose install rules and properties the package reads.

# The manual page, installed compressed as Debian's policy wants manual pages.
set(CORKWHEEL_MANPAGE ${PROJECT_BINARY_DIR}/corkwheel.1)
add_custom_command(OUTPUT ${CORKWHEEL_MANPAGE}.gz
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/docs/corkwheel.1 ${CORKWHEEL_MANPAGE}
    COMMAND gzip -9nf ${CORKWHEEL_MANPAGE}
    DEPENDS ${PROJECT_SOURCE_DIR}/docs/corkwheel.1
    VERBATIM)
add_custom_target(corkwheel-manpage ALL DEPENDS ${CORKWHEEL_MANPAGE}.gz)
install(FILES ${CORKWHEEL_MANPAGE}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# Who holds the copyright of what, and under which licence, in the machine-readable form
# Debian wants at /usr/share/doc/<package>/copyright.
install(FILES ${PROJECT_SOURCE_DIR}/src/app/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/corkwheel)

# The Debian package of what the install rules install, built with `cpack -G DEB` in the
# build folder.
set(CORKWHEEL_PACKAGE_MAINTAINER "The Corkwheel developers <corkwheel@users.noreply.github.com>"
    CACHE STRING "Maintainer field of the Debian package")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corkwheel)
set(CPACK_PACKAGE_VENDOR "The Corkwheel developers")
set(CPACK_PACKAGE_HOMEPAGE_URL https://github.com/corkwheel/corkwheel)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "small information panels on the desktop")
set(CPACK_PACKAGE_DESCRIPTION
    "Corkwheel puts small information panels directly on the desktop, below all
ordinary windows: the output of a shell command run periodically, the text of
a file, a text template with date tokens, a clock, an image, live system
statistics or a web page. An editor window lists the panels and edits every
property with a live preview.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CORKWHEEL_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# dpkg-shlibdeps finds the libraries the executable and the web engine plugin link; these
# are what Qt and the panels load at run time without linking them: the SVG icon engine
# and image format (libqt6svg6), WebP, TIFF and the other image formats of image panels
# (qt6-image-formats-plugins), and the shell that runs the commands of shell panels (zsh).
# Debian 13 moved the SVG plugins to qt6-svg-plugins, and there native Wayland panels load
# Qt's Wayland platform (qt6-wayland).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, qt6-image-formats-plugins, zsh")
execute_process(COMMAND dpkg-query -W qt6-svg-plugins RESULT_VARIABLE _no_svg_plugins
    OUTPUT_QUIET ERROR_QUIET)
if(_no_svg_plugins EQUAL 0)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", qt6-svg-plugins")
endif()
get_property(_layer_shell GLOBAL PROPERTY CORKWHEEL_LAYER_SHELL)
if(_layer_shell)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", qt6-wayland")
endif()
# Qt's own catalogues put the standard texts of its widgets ("Copy", "Paste") in the user's
# language; without them those stay in English.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n")
include(CPack)
