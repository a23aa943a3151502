# Installs BUILD, then moves all of it to PREFIX: what is relocatable survives that.
file(REMOVE_RECURSE ${PREFIX} ${PREFIX}.elsewhere)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}.elsewhere COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${PREFIX}.elsewhere ${PREFIX})

file(GLOB_RECURSE private_headers ${PREFIX}/*_p.h)
if(private_headers)
    message(FATAL_ERROR "Private headers must not be installed: ${private_headers}")
endif()
