# Windows: DLLs named as zimccGetLibVersion reports them, with the exports of a module definition file and an import
# library. All programs and DLLs of the build lie in bin/, where they find one another.

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# The compiler's own libraries go into each. Only OpenMP's runtime stays outside: a process has to have one of it.
add_link_options(-static-libgcc -static-libstdc++)

# The exports of zimcc, in the order of its one list of names.
set(export_list ${PROJECT_SOURCE_DIR}/frame/exports.def)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${export_list})
file(STRINGS ${export_list} lines REGEX "^ZIM_EXPORT")
list(TRANSFORM lines REPLACE "ZIM_EXPORT.(.*)." "  \\1\n")
list(JOIN lines "" names)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/zimcc.def CONTENT "EXPORTS\n  zimccGetLibVersion\n@names@" @ONLY)

function(zimcc_configure_dll target module_definition)
  # zimccmx-7.0.dll and zimcore-7.0.dll; the import libraries are libzimcc.dll.a and libzimcore.dll.a.
  string(REPLACE zimcc zimccmx name ${target})
  set_target_properties(${target} PROPERTIES
    PREFIX ""
    RUNTIME_OUTPUT_NAME ${name}-${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    LINK_DEPENDS ${module_definition})
  target_sources(${target} PRIVATE ${module_definition})
endfunction()

# That runtime and what it needs, beside the DLLs; the C++ library needs threads of POSIX, too.
set(dlls libwinpthread-1.dll)
if(ZIMCC_OPENMP)
  list(APPEND dlls libgomp-1.dll libgcc_s_seh-1.dll)
endif()
set(ZIMCC_RUNTIME_DLLS)
foreach(dll IN LISTS dlls)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND ZIMCC_RUNTIME_DLLS ${path})
endforeach()
file(COPY ${ZIMCC_RUNTIME_DLLS} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
