# Modules and the shared libraries that collect them.
#
#   korve_library(NAME PACKAGE KorvePlatform [ROOT platform] MODULES a b)
#   korve_module(NAME LIBRARY lib CLASSES ... [HEADERS ...] [GENERATED ...] [INTERNAL ...] [USES ...] [PRECOMPILED])
#   korve_sibling(NAME ...)      a module that is a shared library by itself (everything below platform/)
#   korve_system_platform(NAME...)  takes these siblings, and the contracts, from an installed KorvePlatform instead
#   korve_packages()             installs and exports what the calls above gathered; once, at the end
#
# A module is an OBJECT library `NAME_objects`; it may be linked directly by a unit test that must reach an INTERNAL
# class. A shared library holds the objects of its modules, so every object file is in exactly one library.
#   CLASSES   x.cpp is built, x.h is installed        HEADERS   x.h alone, installed
#   INTERNAL  x.cpp is built, x.h stays at home       SOURCES   further files to build, by path
#   GENERATED headers made at build time, by path below ${KORVE_GENERATED_DIR}, installed
#   USES      modules of ours by name, or CMake targets
include(GenerateExportHeader)
include(CMakePackageConfigHelpers)

set(KORVE_GENERATED_DIR ${PROJECT_BINARY_DIR}/include)

# What every compilation of our own code gets; nothing is set directory-wide.
add_library(korve_compile INTERFACE)
target_compile_features(korve_compile INTERFACE cxx_std_20)
target_compile_options(korve_compile INTERFACE
    -Wall -Wextra -Werror -Wno-error=deprecated-declarations
    # Calls within a library go straight to their target.
    $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
target_compile_definitions(korve_compile INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)

function(korve_ours target)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:korve_compile>)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

function(korve_library name)
    cmake_parse_arguments(arg "" "PACKAGE;ROOT" "MODULES" ${ARGN})
    add_library(${name} SHARED)
    add_library(${arg_PACKAGE}::${name} ALIAS ${name})
    korve_ours(${name})
    target_compile_features(${name} PUBLIC cxx_std_20) # our headers need it where they are used, too
    set_target_properties(${name} PROPERTIES
        AUTOMOC OFF LINKER_LANGUAGE CXX SOVERSION ${PROJECT_VERSION_MAJOR} VERSION ${PROJECT_VERSION}
        INSTALL_RPATH $ORIGIN OUTPUT_NAME ${arg_PACKAGE}-${name}
        KORVE_PACKAGE ${arg_PACKAGE} KORVE_ROOT ${PROJECT_SOURCE_DIR}/${arg_ROOT})
    if(NOT BUILD_TESTING)
        set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS OFF)
    endif()
    string(TOUPPER ${name} macro)
    set(header ${KORVE_GENERATED_DIR}/${name}/${name}_export.h)
    generate_export_header(${name} BASE_NAME ${macro} EXPORT_FILE_NAME ${header})
    target_sources(${name} PUBLIC FILE_SET export_header TYPE HEADERS BASE_DIRS ${KORVE_GENERATED_DIR} FILES ${header})
    set_property(GLOBAL APPEND PROPERTY KORVE_LIBRARIES ${name})
endfunction()

# Links `target` to what it uses. A module of the same library is reached by its headers alone.
function(korve_use target library)
    foreach(used IN LISTS ARGN)
        if(TARGET ${used}_objects)
            get_target_property(owner ${used}_objects KORVE_LIBRARY)
            if(owner STREQUAL library)
                continue()
            endif()
            set(used ${owner})
        endif()
        target_link_libraries(${target} PUBLIC ${used})
        target_link_libraries(${library} PUBLIC ${used})
    endforeach()
endfunction()

function(korve_module name)
    cmake_parse_arguments(arg "PRECOMPILED" "LIBRARY" "CLASSES;HEADERS;GENERATED;INTERNAL;SOURCES;USES" ${ARGN})
    set(library ${arg_LIBRARY})
    get_target_property(root ${library} KORVE_ROOT)

    set(headers ${arg_CLASSES} ${arg_HEADERS})
    list(TRANSFORM headers PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    list(TRANSFORM headers APPEND .h)
    set(sources ${arg_CLASSES} ${arg_INTERNAL})
    list(TRANSFORM sources APPEND .cpp)

    set(objects ${name}_objects)
    add_library(${objects} OBJECT ${sources} ${arg_SOURCES} ${headers} ${arg_GENERATED})
    korve_ours(${objects})
    set_target_properties(${objects} PROPERTIES AUTOMOC ON KORVE_LIBRARY ${library})
    target_compile_definitions(${objects} PRIVATE ${library}_EXPORTS)
    target_include_directories(${objects} PUBLIC ${root} ${KORVE_GENERATED_DIR})
    if(arg_PRECOMPILED)
        target_precompile_headers(${objects} PRIVATE <QString> <QVector> <QDateTime> <QDataStream> <QXmlStreamWriter>)
    endif()

    target_sources(${library} PRIVATE $<TARGET_OBJECTS:${objects}>)
    target_sources(${library} PUBLIC FILE_SET HEADERS BASE_DIRS ${root} FILES ${headers})
    if(arg_GENERATED)
        target_sources(${library} PUBLIC
            FILE_SET generated_headers TYPE HEADERS BASE_DIRS ${KORVE_GENERATED_DIR} FILES ${arg_GENERATED})
    endif()
    korve_use(${objects} ${library} ${arg_USES})
endfunction()

function(korve_sibling name)
    korve_library(${name} PACKAGE KorvePlatform ROOT platform)
    korve_module(${name} LIBRARY ${name} ${ARGN})
endfunction()

# Whoever uses them says the same names as with the bundled ones.
function(korve_system_platform)
    find_package(KorvePlatform ${PROJECT_VERSION} REQUIRED)
    add_library(idl ALIAS KorveIdl::idl)
    foreach(name IN LISTS ARGN)
        if(NOT TARGET KorvePlatform::${name})
            message(FATAL_ERROR "${KorvePlatform_DIR} has no library KorvePlatform::${name}")
        endif()
        add_library(${name} ALIAS KorvePlatform::${name})
    endforeach()
endfunction()

# One CMake package and one pkg-config file for each package named by korve_library.
function(korve_packages)
    get_property(libraries GLOBAL PROPERTY KORVE_LIBRARIES)
    foreach(library IN LISTS libraries)
        get_target_property(package ${library} KORVE_PACKAGE)
        list(APPEND packages ${package})
        list(APPEND ${package}_libraries ${library})
        get_target_property(sets ${library} INTERFACE_HEADER_SETS)
        list(TRANSFORM sets PREPEND "FILE_SET;" OUTPUT_VARIABLE file_sets)
        set(install_sets)
        foreach(set IN LISTS sets)
            list(APPEND install_sets FILE_SET ${set} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KorveBase)
        endforeach()
        install(TARGETS ${library} EXPORT ${package}Targets ${install_sets})
    endforeach()
    list(REMOVE_DUPLICATES packages)
    foreach(package IN LISTS packages)
        set(directory ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
        install(EXPORT ${package}Targets NAMESPACE ${package}:: DESTINATION ${directory})
        configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/${package}Config.cmake.in
            ${PROJECT_BINARY_DIR}/${package}Config.cmake INSTALL_DESTINATION ${directory})
        write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
            COMPATIBILITY SameMinorVersion)
        install(FILES ${PROJECT_BINARY_DIR}/${package}Config.cmake ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
            DESTINATION ${directory})
        korve_pkgconfig(${package} ${${package}_libraries})
    endforeach()
    if(KorveIdl IN_LIST packages)
        install(FILES ${PROJECT_SOURCE_DIR}/cmake/FindOmniOrb.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KorveIdl)
    endif()
endfunction()

set(KorveIdl_requires "omniORB4 omnithread4 omniDynamic4")
set(KorvePlatform_requires "KorveIdl Qt5Core")
set(KorveBase_requires "KorvePlatform Qt5Core")

function(korve_pkgconfig package)
    set(libs)
    foreach(library IN LISTS ARGN)
        string(APPEND libs " -l${package}-${library}")
    endforeach()
    set(requires ${${package}_requires})
    file(RELATIVE_PATH prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/package.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
