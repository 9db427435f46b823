# Joins the browser program of src/viewer/ into one script and makes a C++ source that holds it, its style sheet and its page as bytes.
#   qm_embed_viewer(OUTPUT)                            the rule, for the build
#   cmake -DOUTPUT=FILE -P cmake/EmbedViewer.cmake     what the rule runs
# Pages opened from files cannot import modules, so the modules are joined: their imports and the word "export" go, and so do lines of
# comments. A module therefore imports with `import {...} from './x.js';` alone, no two modules declare one name at their top, and
# each stands in the list below what it imports.
set(QM_VIEWER_MODULES
    bytes geometry arcs triangulate inflate document_header decode scene chunk_builder scene_builder level_of_detail worker
    camera styles shaders gl_targets gl_chunks gl_renderer line_raster canvas_renderer pictures scheduler
    texts elements dialogs layers search snapping measuring measuring_tool overlay pages properties coordinates
    saving input toolbar loading main)

function(qm_embed_viewer output)
    set(folder ${CMAKE_SOURCE_DIR}/src/viewer)
    set(inputs ${folder}/viewer.html ${folder}/viewer.css)
    foreach(module IN LISTS QM_VIEWER_MODULES)
        list(APPEND inputs ${folder}/${module}.js)
    endforeach()
    set(script ${CMAKE_SOURCE_DIR}/cmake/EmbedViewer.cmake)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${output} -P ${script}
        DEPENDS ${inputs} ${script}
        COMMENT "Embedding the viewer" VERBATIM)
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    return()
endif()

# "0x61,0x62," of a text.
function(bytes_of text result)
    string(HEX "${text}" hex)
    string(REGEX REPLACE "(..)" "0x\\1," hex "${hex}")
    string(REPEAT "0x..," 20 line)
    string(REGEX REPLACE "(${line})" "\\1\n" hex "${hex}")
    set(${result} "${hex}" PARENT_SCOPE)
endfunction()

function(sha_of text result)
    string(SHA256 hash "${text}")
    string(REGEX REPLACE "(..)" "0x\\1," hash "${hash}")
    set(${result} "${hash}" PARENT_SCOPE)
endfunction()

set(folder ${CMAKE_CURRENT_LIST_DIR}/../src/viewer)
set(program "'use strict';\n{\n")
foreach(module IN LISTS QM_VIEWER_MODULES)
    file(READ ${folder}/${module}.js text)
    string(REGEX REPLACE "import {[^}]*} from '[^']*';\n" "" text "\n${text}")
    string(REPLACE "\nexport " "\n" text "${text}")
    string(REGEX REPLACE "\n *(//|/\\*|\\*)[^\n]*" "" text "${text}")
    string(REGEX REPLACE "\n[ \n]*" "\n" text "${text}")
    if(text MATCHES "\n(import|export) ")
        message(FATAL_ERROR "${module}.js: an import or export of a form that cmake/EmbedViewer.cmake does not know")
    endif()
    string(APPEND program "${text}")
endforeach()
string(APPEND program "}\n")
string(TOLOWER "${program}" lower)
if(lower MATCHES "</script|<!--")
    message(FATAL_ERROR "src/viewer: the script holds what ends or hides a script element")
endif()
file(READ ${folder}/viewer.css style)
file(READ ${folder}/viewer.html page)

bytes_of("${page}" page_bytes)
bytes_of("${style}" style_bytes)
bytes_of("${program}" program_bytes)
sha_of("${style}" style_sha)
sha_of("${program}" program_sha)
file(WRITE ${OUTPUT} "// Made by cmake/EmbedViewer.cmake from src/viewer/.
#include \"render/viewer/viewer_program.h\"

namespace qm {

namespace {

constexpr unsigned char kPage[] = {${page_bytes}};
constexpr unsigned char kStyle[] = {${style_bytes}};
constexpr unsigned char kScript[] = {${program_bytes}};

template <std::size_t size>
std::string_view Text(const unsigned char (&bytes)[size]) {
    return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace

ViewerProgram EmbeddedViewer() {
    return {Text(kPage), Text(kStyle), Text(kScript), {${style_sha}}, {${program_sha}}};
}

}  // namespace qm
")
