# ZLIB::ZLIB, zlib.
include_guard()
include(Require)

find_package(ZLIB QUIET)
if(WIN32)
    qm_require("${ZLIB_FOUND}" zlib libz-mingw-w64-dev)
else()
    qm_require("${ZLIB_FOUND}" zlib zlib1g-dev)
endif()
