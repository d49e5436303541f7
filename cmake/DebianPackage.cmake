# The Debian package, which `cpack` makes of what is installed. It is stripped, and bears the system's marks: build it on
# the release of Debian or Ubuntu that it is for.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quilmora)
set(CPACK_PACKAGE_VENDOR "The Quilmora authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "cover images for short videos")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Quilmora authors <${QUILMORA_SUPPORT_EMAIL}>")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Pick a size and a facial expression, add a photo of the presenter, type the
title and what the background should show, and press one button: Quilmora
describes the cover to an image service, shows what comes back, keeps it, and
saves it wherever you want.

It needs a key of your own for the service (Volcengine Ark). The texts of its
window are Chinese.")

# Linked libraries are found by the system's tool. What is loaded at run time is not: platforms to show a window on,
# pictures in further formats, certificates. Qt brings its own part of TLS with its network library, as it does JPEG with
# its pictures; drawings need no plugin, and Qt's Chinese texts are in the program.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates, qt6-image-formats-plugins, qt6-qpa-plugins")
# Recommended are input methods, letters, the file dialogs of GNOME and of desktops with portals, and Wayland: packages
# have these names in Debian 12, 13 and testing.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "fcitx5-frontend-qt6, fonts-noto-cjk, qt6-gtk-platformtheme, qt6-wayland, qt6-xdgdesktopportal-platformtheme")

execute_process(COMMAND date --utc --rfc-email --date=${QUILMORA_RELEASE_DATE}
  OUTPUT_VARIABLE changelog_date OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
set(CPACK_QUILMORA_CHANGELOG ${linux_files}/changelog)
configure_file(${linux_sources}/debian-changelog.in ${CPACK_QUILMORA_CHANGELOG} @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianDocuments.cmake)

include(CPack)
