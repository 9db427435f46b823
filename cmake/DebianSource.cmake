# Sources of Debian packages, for libraries that Debian does not offer for Windows.
#   debian_source(PACKAGE FILE)   sets PACKAGE_SOURCE, the directory of its unpacked upstream source that holds FILE.
# The source is downloaded once into the build directory, with apt-get and the system's own package sources and keys (their
# state is not touched). Without a network or on other systems unpack it yourself and configure with -DPACKAGE_SOURCE=DIR.
include_guard()

# apt-get with lists and cache in the build directory and the system's sources read as source packages.
function(debian_source_apt_get)
    set(apt ${CMAKE_BINARY_DIR}/debian-source)
    if(NOT EXISTS ${apt}/sources)
        file(MAKE_DIRECTORY ${apt}/lists/partial ${apt}/cache/archives/partial)
        file(GLOB lists /etc/apt/sources.list /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources)
        foreach(list ${lists})
            file(READ ${list} text)
            string(REGEX REPLACE "(^|\n)deb " "\\1deb-src " text "${text}")
            string(REGEX REPLACE "Types:[^\n]*" "Types: deb-src" text "${text}")
            get_filename_component(name ${list} NAME)
            if(name STREQUAL "sources.list")
                set(name system.list)
            endif()
            file(WRITE ${apt}/sources/${name} "${text}")
        endforeach()
    endif()
    execute_process(
        COMMAND apt-get -qq -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts=${apt}/sources
            -o Dir::State::Lists=${apt}/lists -o Dir::Cache=${apt}/cache ${ARGN}
        WORKING_DIRECTORY ${apt} RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE error)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "apt-get ${ARGN} failed: ${error}\n"
            "Unpack the source by hand and name its directory with -D<package>_SOURCE=.")
    endif()
endfunction()

function(debian_source package file)
    if(${package}_SOURCE AND EXISTS ${${package}_SOURCE}/${file})
        return()
    endif()
    message(STATUS "Downloading the source package ${package}")
    debian_source_apt_get(update)
    debian_source_apt_get(source --download-only ${package})
    file(GLOB archive ${CMAKE_BINARY_DIR}/debian-source/${package}_*.orig.tar.*)
    list(FILTER archive EXCLUDE REGEX "\\.asc$")
    file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${CMAKE_BINARY_DIR}/debian-source/${package})
    file(GLOB found ${CMAKE_BINARY_DIR}/debian-source/${package}/${file}
        ${CMAKE_BINARY_DIR}/debian-source/${package}/*/${file})
    if(NOT found)
        message(FATAL_ERROR "The source package ${package} holds no ${file}")
    endif()
    string(REPLACE /${file} "" root "${found}")
    set(${package}_SOURCE ${root} CACHE PATH "Source of the Debian package ${package}" FORCE)
endfunction()
