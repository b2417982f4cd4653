# Compresses the manual pages of a package's tree before CPack packs it.
file(GLOB_RECURSE manuals ${CPACK_TEMPORARY_DIRECTORY}/zimcc.[1-9])
foreach(manual IN LISTS manuals)
  execute_process(COMMAND gzip -9nf ${manual} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
