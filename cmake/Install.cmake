# Installation and the Debian package. `cmake --install` honours DESTDIR; `make package`
# in the top folder builds the .deb through CPack in a tree configured for /usr.
include(GNUInstallDirs)

set(LARK_APP_ID io.github.larktools.LarkTools)
set(_pkg ${PROJECT_SOURCE_DIR}/packaging)
set(_gen ${PROJECT_BINARY_DIR}/packaging)

# the desktop's icons, drawn by the same script and from the same shapes as the
# window icon compiled into the program
set(_icon_sizes 48 64 128 256)
set(_icons ${_gen}/icons/app_logo.svg)
foreach(_n IN LISTS _icon_sizes)
    list(APPEND _icons ${_gen}/icons/app_logo_${_n}x${_n}.png)
endforeach()
add_custom_command(OUTPUT ${_icons}
    COMMAND ${LARK_FONTFORGE_PYTHON} ${PROJECT_SOURCE_DIR}/resources/images/make_images.py --icons ${_gen}/icons
    DEPENDS ${PROJECT_SOURCE_DIR}/resources/images/make_images.py
    COMMENT "Drawing the desktop icons"
    VERBATIM)

# Debian wants manual pages and the changelog compressed, reproducibly (-n: no time)
set(_gz)
foreach(_pair "larkTools.1|${_pkg}/larkTools.1" "larksim.1|${_pkg}/larksim.1")
    string(REPLACE "|" ";" _pair "${_pair}")
    list(GET _pair 0 _name)
    list(GET _pair 1 _src)
    add_custom_command(OUTPUT ${_gen}/${_name}.gz
        COMMAND ${CMAKE_COMMAND} -E make_directory ${_gen}
        COMMAND sh -c "gzip -9n -c \"$0\" > \"$1\"" ${_src} ${_gen}/${_name}.gz
        DEPENDS ${_src}
        VERBATIM)
    list(APPEND _gz ${_gen}/${_name}.gz)
endforeach()
set(LARK_MAINTAINER "larkTools developers <larktools@example.org>")
add_custom_command(OUTPUT ${_gen}/changelog.gz
    COMMAND ${LARK_FONTFORGE_PYTHON} ${_pkg}/debian_changelog.py ${PROJECT_SOURCE_DIR}/CHANGELOG
            ${LARK_VERSION} ${LARK_MAINTAINER} ${_gen}/changelog.gz
    DEPENDS ${_pkg}/debian_changelog.py ${PROJECT_SOURCE_DIR}/CHANGELOG
    VERBATIM)
list(APPEND _gz ${_gen}/changelog.gz)

# A copy run from the build folder finds its manual where an unpacked release has it.
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/doc/manual/index.html
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_SOURCE_DIR}/doc/manual ${PROJECT_BINARY_DIR}/doc/manual
    DEPENDS ${PROJECT_SOURCE_DIR}/doc/manual/index.html
    COMMENT "Copying the manual beside the program"
    VERBATIM)
add_custom_target(larkdesktopfiles ALL DEPENDS ${_icons} ${_gz} ${PROJECT_BINARY_DIR}/doc/manual/index.html)

install(TARGETS larkTools larksim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${_pkg}/${LARK_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${_pkg}/${LARK_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${_gen}/icons/app_logo.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps RENAME ${LARK_APP_ID}.svg)
foreach(_n IN LISTS _icon_sizes)
    install(FILES ${_gen}/icons/app_logo_${_n}x${_n}.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${_n}x${_n}/apps RENAME ${LARK_APP_ID}.png)
endforeach()
install(FILES ${_gen}/larkTools.1.gz ${_gen}/larksim.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
# the license under the name Debian looks for; the program's about box finds it there
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${LARK_DOC_NAME}
    RENAME copyright)
install(FILES ${_gen}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${LARK_DOC_NAME})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/doc/manual DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${LARK_DOC_NAME})

# --- Debian package through CPack ---
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME larktools)
set(CPACK_PACKAGE_VERSION ${LARK_VERSION})
set(CPACK_PACKAGE_VENDOR "The larkTools developers")
set(CPACK_PACKAGE_CONTACT ${LARK_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "debugging workbench for embedded boards")
# the long description; CPack indents it and marks the blank line
set(CPACK_PACKAGE_DESCRIPTION "larkTools is one window with five tool pages for the developer of an embedded
board: a serial assistant (text or hexadecimal receive view, typed, listed and
periodic sending), a camera debug assistant (images and sensor registers over
serial, TCP or UDP), a network assistant (TCP server, TCP client, UDP), a PID
tuning assistant with a live plot of five channels, and a binary file editor.

The package also holds larksim, a simulator of the boards the pages talk to.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://larktools.github.io/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
# (The unpacker's use of a private Qt class binds the program to one Qt build;
# dpkg-shlibdeps adds Debian's qtbase-abi-* dependency for that by itself.)
# a font that has the Chinese texts; fonts are no libraries, so dpkg-shlibdeps misses it
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-wqy-microhei")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
include(CPack)
