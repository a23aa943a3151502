# korve_idl(OUT NAME...): compiles NAME.idl of this folder with omniidl into ${KORVE_GENERATED_DIR}/<folder>/, and
# leaves the paths of the sources in OUT and of the headers in OUT_HEADERS. The files include each other by plain names,
# so they stay in one folder; they are written as "idl/korve.hh" elsewhere. A contract that builds on one of idl/ includes
# it by that path, and first what that one includes.
function(korve_idl out)
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    set(directory ${KORVE_GENERATED_DIR}/${folder})
    file(MAKE_DIRECTORY ${directory})
    set(sources)
    set(headers)
    set(all ${ARGN})
    list(TRANSFORM all PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    list(TRANSFORM all APPEND .idl)
    foreach(name IN LISTS ARGN)
        add_custom_command(
            OUTPUT ${directory}/${name}SK.cc ${directory}/${name}.hh
            COMMAND ${OmniOrb_IDL} -bcxx -Wbuse_quotes -Wbkeep_inc_path -I${CMAKE_CURRENT_SOURCE_DIR}
                    -I${PROJECT_SOURCE_DIR} -I${PROJECT_SOURCE_DIR}/idl -C${directory}
                    ${CMAKE_CURRENT_SOURCE_DIR}/${name}.idl
            DEPENDS ${all}
            COMMENT "omniidl ${folder}/${name}.idl" VERBATIM)
        list(APPEND sources ${directory}/${name}SK.cc)
        list(APPEND headers ${directory}/${name}.hh)
    endforeach()
    # What omniidl writes is not ours to warn about.
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w SKIP_AUTOGEN ON)
    set(${out} ${sources} PARENT_SCOPE)
    set(${out}_HEADERS ${headers} PARENT_SCOPE)
endfunction()
