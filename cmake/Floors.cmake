# One target per folder of src/. A target sees the headers of its own folder and of the targets it links, and no others:
# each folder gets an include root that holds nothing but a link to itself, so "frame/error.h" does not resolve
# from a floor that does not link genutil_frame.

# genutil_floor(<folder> SOURCES <files> [LINKS <targets>])
function(genutil_floor folder)
    cmake_parse_arguments(FLOOR "" "" "SOURCES;LINKS" ${ARGN})
    string(REPLACE "/" "_" suffix ${folder})
    set(target genutil_${suffix})
    set(root ${PROJECT_BINARY_DIR}/include-roots/${suffix})
    get_filename_component(parent ${root}/${folder} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)

    add_library(${target} STATIC ${FLOOR_SOURCES})
    target_include_directories(${target} PUBLIC ${root})
    target_link_libraries(${target} PUBLIC ${FLOOR_LINKS} PRIVATE genutil_warnings)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# genutil_test(<name> SOURCES <files> LINKS <targets> [OWN_MAIN] [ENVIRONMENT <variables>]): a GoogleTest program, one
# ctest entry per test case.
function(genutil_test name)
    cmake_parse_arguments(TEST "OWN_MAIN" "" "SOURCES;LINKS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    if(TEST_OWN_MAIN)
        set(framework GTest::gmock)
    else()
        set(framework GTest::gmock_main)
    endif()
    target_link_libraries(${name} PRIVATE ${TEST_LINKS} ${framework} GTest::gtest genutil_warnings)
    # A disabled test is one that another starts, in a process of its own.
    gtest_discover_tests(${name} TEST_FILTER "-*.DISABLED_*" DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
    # Set when ctest reads its tests: discovery would take such a list apart.
    set(environment QT_QPA_PLATFORM=offscreen LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp
        ${TEST_ENVIRONMENT})
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}_environment.cmake)
    file(WRITE ${script} "set_tests_properties(\${${name}_TESTS} PROPERTIES ENVIRONMENT \"${environment}\")\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${script})
endfunction()
