# CLI11::CLI11, the option parser (headers only). For Windows the host's headers serve, through a link to them alone: the
# folder that they stand in holds the host's C library too.
include_guard()

if(NOT WIN32)
    find_package(CLI11 REQUIRED)
    return()
endif()

find_path(QM_CLI11 CLI/CLI.hpp REQUIRED NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include
    DOC "Directory of CLI/CLI.hpp (Debian package libcli11-dev)")
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/cli11)
file(CREATE_LINK ${QM_CLI11}/CLI ${CMAKE_BINARY_DIR}/cli11/CLI SYMBOLIC)
add_library(CLI11::CLI11 INTERFACE IMPORTED)
target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/cli11)
