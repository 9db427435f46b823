# Sources that scripts/fetch-sources has put into build/sources, for libraries that Debian does not offer for Windows.
#   fetched_source(PACKAGE FILE)   sets PACKAGE_SOURCE, the directory of the source that holds FILE.
# Nothing is downloaded here. Another copy of a source is named with -DPACKAGE_SOURCE=DIR.
include_guard()

function(fetched_source package file)
    set(${package}_SOURCE ${PROJECT_SOURCE_DIR}/build/sources/${package} CACHE PATH "Source of ${package}")
    if(NOT EXISTS ${${package}_SOURCE}/${file})
        message(FATAL_ERROR "The source of ${package} is not in ${${package}_SOURCE}: run scripts/fetch-sources")
    endif()
endfunction()
