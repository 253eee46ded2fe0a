# The Debian packages that tools/package makes: kestrelview, and kestrelview-dev for those who write
# visualisations. Included last: CPack takes what is set here.

set(KV_MAINTAINER "The Kestrelview developers <developers@kestrelview.org>"
    CACHE STRING "Who answers for the packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrelview)
set(CPACK_PACKAGE_CONTACT "${KV_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Unspecified plugin_development)
# Whatever umask the packager has.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME kestrelview)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_SECTION video)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_SHLIBDEPS ON)
# Loaded while the program runs, so that no list of its libraries has it.
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_DEPENDS "libmpv2 (>= 0.35)")
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_RECOMMENDS
    "pipewire-pulse | pulseaudio, qt6-translations-l10n, qt6-wayland, shared-mime-info")
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_SUGGESTS "kestrelview-dev, xdg-desktop-portal")
set(CPACK_DEBIAN_UNSPECIFIED_DESCRIPTION
"small, exact, fast media player
Kestrelview plays local files, internet streams and playlists in a small
window that starts at once and does what it is told.

 * Resume files remember where a film was left, and where it should stop.
 * A loop between two marks, steps of single pictures, speed from standstill
   to double, balance and volume on sliders.
 * A playlist window with tag columns, sorting, shuffling, search and copying
   of files.
 * Full screen with a control panel that hides itself.
 * A level meter and plug-ins for music, and colour schemes.

What FFmpeg decodes is played.")

set(CPACK_DEBIAN_PLUGIN_DEVELOPMENT_PACKAGE_NAME kestrelview-dev)
set(CPACK_DEBIAN_PLUGIN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PLUGIN_DEVELOPMENT_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PLUGIN_DEVELOPMENT_PACKAGE_DEPENDS "qt6-base-dev")
set(CPACK_DEBIAN_PLUGIN_DEVELOPMENT_PACKAGE_SUGGESTS "kestrelview")
set(CPACK_DEBIAN_PLUGIN_DEVELOPMENT_DESCRIPTION
"visualisation plug-ins for the Kestrelview media player
A visualisation is a shared library with one Qt class in it, which gets the
sound that plays and a picture to paint on. This package holds the header
that tells what such a class has, and a template to start from.")

# Debian's files that no other system wants, and its compression of texts.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/finish.cmake)

include(CPack)
