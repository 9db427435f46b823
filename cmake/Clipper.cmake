# qm_clipper: the Clipper library 6. Natively Debian's package libpolyclipping-dev through pkg-config; for Windows, where
# Debian has no binary, a static library made from the same source package.
include_guard()

if(NOT WIN32)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(polyclipping REQUIRED IMPORTED_TARGET polyclipping)
    add_library(qm_clipper INTERFACE)
    target_link_libraries(qm_clipper INTERFACE PkgConfig::polyclipping)
    return()
endif()

include(DebianSource)
debian_source(libpolyclipping cpp/clipper.cpp)
add_library(qm_clipper STATIC ${libpolyclipping_SOURCE}/cpp/clipper.cpp)
target_compile_options(qm_clipper PRIVATE -w)
target_include_directories(qm_clipper SYSTEM INTERFACE ${libpolyclipping_SOURCE}/cpp)
