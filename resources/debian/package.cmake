# `make package`: a Debian package of what `cmake --install` puts in place.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillora)
set(CPACK_PACKAGE_VENDOR "The Quillora developers")
set(CPACK_PACKAGE_CONTACT ${QUILLORA_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "desktop translator using the Google Translate web service")
set(CPACK_PACKAGE_DESCRIPTION
    "Quillora sends a typed, pasted or opened text to the Google Translate web\n"
    "service and shows the translation, its romanization and dictionary entries.\n"
    "It can watch the clipboard and translate whatever another program copies,\n"
    "lives in the notification area, comes back with the global key F11, speaks\n"
    "short texts and translates whole web pages in the browser.\n"
    "\n"
    "The package also holds quillora-cli, a command-line translator.")
string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${QUILLORA_SITE_URL}/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Added to the computed list: the SVG plug-ins that draw every icon are loaded at run time.
set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt6svg6)

# Loaded at run time, so dpkg-shlibdeps cannot see them: media plug-ins for the speaker buttons, the
# desktop portal for the global key under Wayland, Qt's Wayland platform, and xdg-open for the updater.
set(QUILLORA_DEB_RECOMMENDS
    gstreamer1.0-plugins-base
    gstreamer1.0-plugins-good
    "gstreamer1.0-pulseaudio | gstreamer1.0-alsa"
    xdg-desktop-portal
    qt6-wayland
    xdg-utils)
set(QUILLORA_DEB_SUGGESTS bash-completion apertium apertium-eng-spa)
list(JOIN QUILLORA_DEB_RECOMMENDS ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)
list(JOIN QUILLORA_DEB_SUGGESTS ", " CPACK_DEBIAN_PACKAGE_SUGGESTS)

include(CPack)
