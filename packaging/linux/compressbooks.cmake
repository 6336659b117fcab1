# Runs before the package is made: manuals and the changelog are compressed there, without a time of their own.
file(GLOB_RECURSE books "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.1" "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/changelog")
if(NOT books)
  message(FATAL_ERROR "No manuals below ${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
endif()
execute_process(COMMAND gzip -9nf ${books} COMMAND_ERROR_IS_FATAL ANY)
