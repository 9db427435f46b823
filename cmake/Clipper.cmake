# qm_clipper: the Clipper library 6. Natively Debian's package libpolyclipping-dev through pkg-config; for Windows, where
# Debian has no binary, a static library made from the same source.
include_guard()

if(NOT WIN32)
    include(Require)
    qm_pkg_config(polyclipping libpolyclipping-dev "" polyclipping)
    add_library(qm_clipper INTERFACE)
    target_link_libraries(qm_clipper INTERFACE PkgConfig::polyclipping)
    return()
endif()

include(FetchedSource)
fetched_source(libpolyclipping cpp/clipper.cpp)
add_library(qm_clipper STATIC ${libpolyclipping_SOURCE}/cpp/clipper.cpp)
target_compile_options(qm_clipper PRIVATE -w)
target_include_directories(qm_clipper SYSTEM INTERFACE ${libpolyclipping_SOURCE}/cpp)
