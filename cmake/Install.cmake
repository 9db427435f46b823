# What `cmake --install` puts where, below the prefix:
#   bin/qmplot   lib/libqmfilter.so   lib/qmfilter/ (the component library, QmZipx.so)   include/qmfilter/
#   lib/cmake/QmFilter/ (find_package(QmFilter): QmFilter::qmfilter)   lib/pkgconfig/qmfilter.pc
# Each of the three that open archives finds QmZipx.so through its run path, so the tree can be moved as a whole.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
option(QM_INSTALL "Install this project" ${PROJECT_IS_TOP_LEVEL})
if(NOT QM_INSTALL)
    return()
endif()

set(modules ${CMAKE_INSTALL_LIBDIR}/qmfilter)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/QmFilter)
file(RELATIVE_PATH from_bin /${CMAKE_INSTALL_BINDIR} /${modules})
set_target_properties(qmplot PROPERTIES INSTALL_RPATH "$ORIGIN/${from_bin}")
set_target_properties(qmfilter PROPERTIES INSTALL_RPATH "$ORIGIN/qmfilter")
set_target_properties(QmFilter_HPGL PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS qmplot RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS qmfilter EXPORT QmFilter LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS QmFilter_HPGL QmZipx LIBRARY DESTINATION ${modules})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qmfilter DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# Generated from the IDL; it includes <windows.h> and others, which stand in qmfilter/sdk.
install(FILES $<TARGET_PROPERTY:qm_interfaces,QM_HEADER> DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qmfilter)

install(EXPORT QmFilter NAMESPACE QmFilter:: FILE QmFilterTargets.cmake DESTINATION ${package})
set(config ${PROJECT_BINARY_DIR}/package)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QmFilterConfig.cmake.in ${config}/QmFilterConfig.cmake
    INSTALL_DESTINATION ${package} PATH_VARS modules)
write_basic_package_version_file(${config}/QmFilterConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${config}/QmFilterConfig.cmake ${config}/QmFilterConfigVersion.cmake DESTINATION ${package})

file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/qmfilter.pc.in ${config}/qmfilter.pc @ONLY)
install(FILES ${config}/qmfilter.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
