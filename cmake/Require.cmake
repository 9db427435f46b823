# Libraries that the build cannot do without; the message about a missing one names its Debian package.
#   qm_require(FOUND NAME PACKAGE [OPTION])          stops unless FOUND is true; OPTION switches off what needs NAME
#   qm_pkg_config(PREFIX PACKAGE OPTION MODULE...)   target PkgConfig::PREFIX from pkg-config; OPTION may be ""
include_guard()

function(qm_require found name package)
    if(found)
        return()
    endif()
    set(advice "install the Debian package ${package}")
    if(ARGN)
        string(APPEND advice ", or configure with -D${ARGN}=OFF to build without what needs it")
    endif()
    message(FATAL_ERROR "${name} is missing: ${advice}")
endfunction()

macro(qm_pkg_config prefix package option)
    find_package(PkgConfig QUIET)
    qm_require("${PKG_CONFIG_FOUND}" pkg-config pkg-config)
    pkg_check_modules(${prefix} QUIET IMPORTED_TARGET GLOBAL ${ARGN})
    qm_require("${${prefix}_FOUND}" "${ARGV3}" ${package} ${option})
endmacro()
