# The installed tree: the program with its data and its configuration in one folder, where the
# release mode looks for them, and a link to it among the commands.
#
#   lib/vesk/           vesk, vesk.ini, data/
#   bin/                vesk -> ../lib/vesk/vesk, vesk_atlas
#   share/              menu entry, metainfo, icons, manual pages
set(VESK_HOME lib/vesk)

set(VESK_RESOURCE_MODE release)
configure_file(packaging/vesk.ini.in packaging/vesk.ini @ONLY)
file(CREATE_LINK ../${VESK_HOME}/vesk ${CMAKE_CURRENT_BINARY_DIR}/packaging/vesk SYMBOLIC)

install(TARGETS vesk RUNTIME DESTINATION ${VESK_HOME})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/vesk.ini DESTINATION ${VESK_HOME})
file(GLOB data_files CONFIGURE_DEPENDS data/*.png data/*.ttf)
install(FILES ${data_files} DESTINATION ${VESK_HOME}/data)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/vesk DESTINATION bin)
install(TARGETS vesk_atlas RUNTIME DESTINATION bin)

install(FILES packaging/vesk.desktop DESTINATION share/applications)
install(FILES packaging/local.vesk.vesk.metainfo.xml DESTINATION share/metainfo)
install(FILES packaging/vesk.6 packaging/vesk_atlas.6 DESTINATION share/man/man6)
foreach(size 16 32 48 64 128 256)
    install(FILES packaging/icons/vesk-${size}.png
        DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME vesk.png)
endforeach()
install(FILES packaging/icons/vesk.svg DESTINATION share/icons/hicolor/scalable/apps)

# The Debian package, made by `cpack` in the build folder.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The Vesk developers <vesk@vesk.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "small top-down sailing game in a vast archipelago")
set(CPACK_PACKAGE_DESCRIPTION_FILE ${CMAKE_CURRENT_SOURCE_DIR}/packaging/deb/description)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/packaging/deb/Finish.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libgl1) # loaded at run time, so no link tells of it
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/packaging/deb/conffiles)
include(CPack)
