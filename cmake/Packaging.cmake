# Packages of the installed programs: `cpack --config build-release/CPackConfig.cmake` makes a
# .tar.gz everywhere and, on Debian and Ubuntu, a .deb.

set(TARNWICK_PACKAGE_CONTACT "Tarnwick <packages@${TARNWICK_UPDATE_HOST}>" CACHE STRING
    "Maintainer line of the Debian package")

set(CPACK_PACKAGE_NAME "tarnwick")
set(CPACK_PACKAGE_VENDOR "${TARNWICK_ORGANIZATION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${PROJECT_HOMEPAGE_URL}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${TARNWICK_PACKAGE_CONTACT}")
set(CPACK_STRIP_FILES ON)

set(CPACK_GENERATOR "TGZ")
find_program(TARNWICK_DPKG dpkg)
if(TARNWICK_DPKG AND NOT APPLE)
    list(APPEND CPACK_GENERATOR "DEB")
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION "utils")
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # The icons are drawn as SVG, which Qt reads through a plugin that no library links.
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6")
endif()

include(CPack)
