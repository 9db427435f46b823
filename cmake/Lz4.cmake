# qm_lz4: the LZ4 library, which packs display lists. Natively Debian's package liblz4-dev through pkg-config; for Windows,
# where Debian has no binary, a static library made from the same source.
include_guard()

if(NOT WIN32)
    include(Require)
    qm_pkg_config(lz4 liblz4-dev "" liblz4)
    add_library(qm_lz4 INTERFACE)
    target_link_libraries(qm_lz4 INTERFACE PkgConfig::lz4)
    return()
endif()

include(FetchedSource)
fetched_source(lz4 lib/lz4.c)
add_library(qm_lz4 STATIC ${lz4_SOURCE}/lib/lz4.c)
set_source_files_properties(${lz4_SOURCE}/lib/lz4.c PROPERTIES LANGUAGE CXX)
target_compile_options(qm_lz4 PRIVATE -w)
target_include_directories(qm_lz4 SYSTEM INTERFACE ${lz4_SOURCE}/lib)
