# Packages for Debian: `cpack` in the build folder makes qmplot_*.deb (the tool with all libraries) and
# libqmfilter-dev_*.deb (headers, CMake package, pkg-config file). scripts/package-debian builds for that with the prefix
# /usr; tests/packages/ holds the tests.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qmplot)
set(CPACK_PACKAGE_VENDOR "The QmFilter HPGL authors")
# Who packs puts a name and an address in place of it: cpack -D CPACK_PACKAGE_CONTACT=...
set(CPACK_PACKAGE_CONTACT "The QmFilter HPGL authors <packages@qmfilter.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL qmplot dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_QMPLOT_PACKAGE_NAME qmplot)
set(CPACK_DEBIAN_QMPLOT_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_QMPLOT_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_QMPLOT_DESCRIPTION "opens, converts and shows plot files (HP-GL, HP-GL/2, HP-RTL)
The tool qmplot tells what is in plots, converts them to SVG, PDF, PNG, DXF
and a page for the browser, and writes them again as plots. File managers
show plots as pictures. The libraries that programs load to open plots are
included.")
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libqmfilter-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qmplot (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEV_DESCRIPTION "opens plot files (HP-GL, HP-GL/2, HP-RTL), development files
Headers, CMake package and pkg-config file for programs that open plots
with libqmfilter or with the filter components. The libraries themselves
are in the package qmplot.")

# Programs that link libqmfilter depend on the package that holds it.
configure_file(${PROJECT_SOURCE_DIR}/packaging/shlibs.in ${PROJECT_BINARY_DIR}/package/shlibs @ONLY)
set(CPACK_DEBIAN_QMPLOT_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/package/shlibs ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
