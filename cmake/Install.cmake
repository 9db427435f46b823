# What `cmake --install` puts where, below the prefix (DESTDIR is honoured):
#   bin/qmplot   lib/libqmfilter.so   lib/qmfilter/ (the component library, QmZipx.so)   include/qmfilter/
#   lib/cmake/QmFilter/ (find_package(QmFilter): QmFilter::qmfilter)   lib/pkgconfig/qmfilter.pc
#   share/: manual pages, completions, MIME type, thumbnailer, desktop entry, licence
# Each of the three that open archives finds QmZipx.so through its run path, so the tree can be moved as a whole.
# The component "qmplot" is what users need, "dev" what is compiled against; cmake/Package.cmake packs them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
option(QM_INSTALL "Install this project" ${PROJECT_IS_TOP_LEVEL})
if(NOT QM_INSTALL)
    return()
endif()

set(modules ${CMAKE_INSTALL_LIBDIR}/qmfilter)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/QmFilter)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
file(RELATIVE_PATH from_bin /${CMAKE_INSTALL_BINDIR} /${modules})
set_target_properties(qmplot PROPERTIES INSTALL_RPATH "$ORIGIN/${from_bin}")
set_target_properties(qmfilter PROPERTIES INSTALL_RPATH "$ORIGIN/qmfilter")
set_target_properties(QmFilter_HPGL PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS qmplot RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT qmplot)
install(TARGETS qmfilter EXPORT QmFilter LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT qmplot NAMELINK_COMPONENT dev)
install(TARGETS QmFilter_HPGL QmZipx LIBRARY DESTINATION ${modules} COMPONENT qmplot)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qmfilter DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
# Generated from the IDL; it includes <windows.h> and others, which stand in qmfilter/sdk.
install(FILES $<TARGET_PROPERTY:qm_interfaces,QM_HEADER> DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qmfilter COMPONENT dev)

install(EXPORT QmFilter NAMESPACE QmFilter:: FILE QmFilterTargets.cmake DESTINATION ${package} COMPONENT dev)
set(config ${PROJECT_BINARY_DIR}/package)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QmFilterConfig.cmake.in ${config}/QmFilterConfig.cmake
    INSTALL_DESTINATION ${package} PATH_VARS modules)
write_basic_package_version_file(${config}/QmFilterConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${config}/QmFilterConfig.cmake ${config}/QmFilterConfigVersion.cmake DESTINATION ${package} COMPONENT dev)

file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/qmfilter.pc.in ${config}/qmfilter.pc @ONLY)
install(FILES ${config}/qmfilter.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

# qmplot prints its manual pages and completions itself, from the texts of its help.
set(texts ${PROJECT_BINARY_DIR}/share)
add_custom_command(OUTPUT ${texts}/written
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${texts}
    COMMAND qmplot --manuals ${texts}
    COMMAND sh -c "cd '${texts}' && gzip -9n man/man1/*.1 && gzip -9nc '${PROJECT_SOURCE_DIR}/CHANGELOG.md' >CHANGELOG.md.gz && touch written"
    DEPENDS qmplot ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    COMMENT "Printing manual pages and completions" VERBATIM)
add_custom_target(qm_texts ALL DEPENDS ${texts}/written)
install(DIRECTORY ${texts}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT qmplot)
install(DIRECTORY ${texts}/bash-completion DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT qmplot)
install(DIRECTORY ${texts}/fish DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT qmplot)
# Debian's zsh looks in a folder of its own below /usr.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" AND EXISTS /etc/debian_version)
    set(zsh_functions ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
else()
    set(zsh_functions ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()
install(DIRECTORY ${texts}/zsh/site-functions/ DESTINATION ${zsh_functions} COMPONENT qmplot)

install(FILES ${packaging}/qmplot.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT qmplot)
install(FILES ${packaging}/qmplot.thumbnailer DESTINATION ${CMAKE_INSTALL_DATADIR}/thumbnailers COMPONENT qmplot)
install(FILES ${packaging}/qmplot.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT qmplot)
# The libraries that are linked are linked dynamically, so their licences come with their own packages.
foreach(name qmplot libqmfilter-dev)
    string(REPLACE libqmfilter-dev dev component ${name})
    set(documents ${CMAKE_INSTALL_DATADIR}/doc/${name})
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright DESTINATION ${documents} COMPONENT ${component})
    install(FILES ${texts}/CHANGELOG.md.gz DESTINATION ${documents} COMPONENT ${component})
    install(FILES ${packaging}/${name}.lintian-overrides RENAME ${name}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endforeach()

include(Package)
