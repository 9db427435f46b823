# Helpers that every folder's CMakeLists uses, so that one place holds the flags.
#   qm_library(name SOURCES ... LIBS ...)   a static library of one src/ folder
#   qm_test(name SOURCES ... LIBS ... PROPERTIES ...)
#                                           a GoogleTest program whose cases ctest lists one by one, with ctest properties

add_library(qm_flags INTERFACE)
target_include_directories(qm_flags INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
# -ffp-contract=off: the native and the Windows build must truncate the same doubles.
target_compile_options(qm_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
    $<$<NOT:$<STREQUAL:${QM_UNIFY},ALL>>:-Wshadow> -Wold-style-cast
    $<$<BOOL:${QM_WERROR}>:-Werror> -ffp-contract=off)
if(WIN32)
    target_compile_definitions(qm_flags INTERFACE UNICODE _UNICODE NOMINMAX __USE_MINGW_ANSI_STDIO=1)
    target_link_options(qm_flags INTERFACE -static)
    # Where Wine is installed, ctest runs the programs of the cross build through it.
    find_program(QM_WINE NAMES wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
    if(QM_WINE AND CMAKE_CROSSCOMPILING)
        configure_file(${PROJECT_SOURCE_DIR}/cmake/wine-run.in ${PROJECT_BINARY_DIR}/wine-run @ONLY
            FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
        set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_BINARY_DIR}/wine-run)
    endif()
endif()
if(QM_SANITIZE)
    # The library-wide "no recovery" turns every finding into a failed test.
    add_compile_options(-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
        -fno-omit-frame-pointer -D_GLIBCXX_ASSERTIONS)
    add_link_options(-fsanitize=address,undefined)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # For libFuzzer; and conversions of integers that change the value, which gcc cannot tell. Watching every
        # comparison takes a third of the time; dictionaries and mutators know the words.
        add_compile_options(-fsanitize=fuzzer-no-link,implicit-conversion -fno-sanitize-coverage=trace-cmp
            -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitizer-ignore.txt
            -fsanitize-address-use-after-return=never)
    endif()
endif()
if(QM_TSAN)
    add_compile_options(-fsanitize=thread)
    add_link_options(-fsanitize=thread)
endif()
# Twelve sources at a time: most of the building time of one is what it includes. `kind` is SOURCES or TESTS. That a local name of one
# source is a name of another is no fault; the native build of .ci/run, whose sources stand alone, finds those that are.
function(qm_unify name kind)
    if(QM_UNIFY STREQUAL "ALL" OR QM_UNIFY STREQUAL kind)
        set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
    endif()
endfunction()

function(qm_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC qm_flags ${arg_LIBS})
    qm_unify(${name} SOURCES)
endfunction()

# The program alone.
function(qm_test_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    qm_unify(${name} TESTS)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    # The tests' own arithmetic may wrap where the system's may not.
    target_compile_options(${name} PRIVATE $<$<AND:$<BOOL:${QM_SANITIZE}>,$<CXX_COMPILER_ID:Clang>>:-fno-sanitize=implicit-conversion>)
    # Most of a test's building time is the optimiser's, and for nothing.
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:-O0>)
    target_link_libraries(${name} PRIVATE qm_flags ${arg_LIBS} GTest::gtest_main)
endfunction()

function(qm_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;PROPERTIES" ${ARGN})
    qm_test_program(${name} SOURCES ${arg_SOURCES} LIBS ${arg_LIBS})
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
        PROPERTIES ${arg_PROPERTIES})
endfunction()
