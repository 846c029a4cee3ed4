# Installation: `cmake --install` and the .deb package by CPack.
# The program folder goes to <prefix>/lib/brevano with the files an installation supplies; the
# command `brevano` in <prefix>/bin points at it; a menu entry and its icon go where the desktop
# looks. A user who cannot write into the program folder works in a folder of his own, seeded from
# it at the first start.
include(GNUInstallDirs)
set(BREVANO_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/brevano)

install(TARGETS brevano RUNTIME DESTINATION ${BREVANO_INSTALL_DIR})
install(FILES ${BREVANO_BIN_DIR}/Servizio.mdb ${BREVANO_BIN_DIR}/temp.mdb ${BREVANO_BIN_DIR}/Utilità.mdb
              ${PROJECT_SOURCE_DIR}/data/Italiano.lng
        DESTINATION ${BREVANO_INSTALL_DIR})
install(FILES ${BREVANO_BIN_DIR}/Base/Aziende.mdb DESTINATION ${BREVANO_INSTALL_DIR}/Base)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/report/ DESTINATION ${BREVANO_INSTALL_DIR} FILES_MATCHING PATTERN "*.rpf")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/guida DESTINATION ${BREVANO_INSTALL_DIR})
install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
  file(CREATE_LINK ../${BREVANO_INSTALL_DIR}/brevano
       \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/brevano\" SYMBOLIC)")
install(FILES ${PROJECT_SOURCE_DIR}/data/installazione/brevano.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/data/installazione/brevano.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brevano)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Contabilità e fatturazione per il piccolo ufficio")
set(CPACK_PACKAGE_CONTACT "Brevano <brevano@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
# The shared libraries the program links (Qt, SQLite, libxlsxwriter...) become its dependencies.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "tango-icon-theme, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
include(CPack)
