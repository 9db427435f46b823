# CLI11::CLI11, the option parser (headers only). For Windows the host's headers serve, through a link to them alone: the
# folder that they stand in holds the host's C library too.
include_guard()
include(Require)

if(NOT WIN32)
    find_package(CLI11 QUIET)
    qm_require("${CLI11_FOUND}" CLI11 libcli11-dev)
    return()
endif()

find_path(QM_CLI11 CLI/CLI.hpp NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include DOC "Directory of CLI/CLI.hpp")
qm_require("${QM_CLI11}" CLI11 libcli11-dev)
set(links ${CMAKE_CURRENT_BINARY_DIR}/cli11)
file(MAKE_DIRECTORY ${links})
file(CREATE_LINK ${QM_CLI11}/CLI ${links}/CLI SYMBOLIC)
add_library(CLI11::CLI11 INTERFACE IMPORTED)
target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${links})
