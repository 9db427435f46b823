# qm_libzip: the zip library of the archive library. Natively Debian's package libzip-dev through pkg-config; for Windows,
# where Debian has no binary, a static library made from the same source, with zlib and bzip2.
include_guard()

if(NOT WIN32)
    include(Require)
    qm_pkg_config(libzip libzip-dev "" libzip)
    add_library(qm_libzip INTERFACE)
    target_link_libraries(qm_libzip INTERFACE PkgConfig::libzip)
    return()
endif()

include(FetchedSource)
include(ExternalProject)
fetched_source(libzip lib/zip.h)
fetched_source(bzip2 bzlib.h)
enable_language(C)
set(bzip2_files blocksort.c bzlib.c compress.c crctable.c decompress.c huffman.c randtable.c)
list(TRANSFORM bzip2_files PREPEND ${bzip2_SOURCE}/)
add_library(qm_bzip2 STATIC ${bzip2_files})
# Without BZ_EXPORT its header declares pointers to the functions of a DLL.
target_compile_options(qm_bzip2 PRIVATE -w -DBZ_EXPORT)
set(libzip_root ${PROJECT_BINARY_DIR}/libzip)
# Its project is not made to be a part of another one, so it is built and installed by itself.
set(libzip_off)
foreach(feature COMMONCRYPTO GNUTLS MBEDTLS OPENSSL WINDOWS_CRYPTO LZMA)
    list(APPEND libzip_off -DENABLE_${feature}=OFF)
endforeach()
ExternalProject_Add(libzip_build
    SOURCE_DIR ${libzip_SOURCE}
    PREFIX ${libzip_root}
    CMAKE_ARGS
        -DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE} -DCMAKE_BUILD_TYPE=Release
        -DCMAKE_C_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER} "-DCMAKE_C_FLAGS=-w -DBZ_EXPORT"
        -DBZIP2_INCLUDE_DIR=${bzip2_SOURCE} -DBZIP2_LIBRARIES=$<TARGET_FILE:qm_bzip2>
        -DCMAKE_INSTALL_PREFIX=${libzip_root} -DCMAKE_INSTALL_LIBDIR=lib
        -DBUILD_SHARED_LIBS=OFF -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF
        ${libzip_off}
    DEPENDS qm_bzip2
    BUILD_BYPRODUCTS ${libzip_root}/lib/libzip.a
    LOG_CONFIGURE ON LOG_BUILD ON LOG_INSTALL ON LOG_OUTPUT_ON_FAILURE ON)

include(Zlib)
file(MAKE_DIRECTORY ${libzip_root}/include)
add_library(qm_libzip INTERFACE)
add_dependencies(qm_libzip libzip_build)
target_include_directories(qm_libzip SYSTEM INTERFACE ${libzip_root}/include)
target_link_libraries(qm_libzip INTERFACE ${libzip_root}/lib/libzip.a qm_bzip2 ZLIB::ZLIB)
