# What a sanitizer writes when it finds something. A service that a test has started and killed tells it in no other way.
set(korveSanitizerFinding "(WARNING|ERROR): [A-Za-z]+Sanitizer|runtime error: ")

# korve_test(NAME SOURCES ... LINKS ... [LABELS unit]): one GoogleTest program, run by ctest as one process, with a
# QCoreApplication around it (tests/support/main.cpp). LINKS takes shared libraries, or `x_objects` to reach the
# internal classes of module x, never both.
function(korve_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS;LABELS" ${ARGN})
    if(NOT arg_LABELS)
        set(arg_LABELS unit)
    endif()
    add_executable(${name} ${arg_SOURCES})
    korve_ours(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} korve_test_main)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT 1200
        FAIL_REGULAR_EXPRESSION "${korveSanitizerFinding}")
endfunction()
