# What a program for Windows needs beside its code.
enable_language(RC)

# Icon, version and manifest; our own libraries linked into the one file; the same bytes each time.
function(vesk_windows_program target description)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}-resources)
    configure_file(${PROJECT_SOURCE_DIR}/windows/program.rc.in ${folder}/program.rc @ONLY)
    file(GLOB pictures CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/packaging/icons/vesk-*.png)
    set(maker ${PROJECT_SOURCE_DIR}/windows/make-icon)
    add_custom_command(OUTPUT ${folder}/vesk.ico DEPENDS ${maker} ${pictures}
        COMMAND python3 ${maker} ${folder}/vesk.ico ${pictures})
    set_source_files_properties(${folder}/program.rc PROPERTIES
        OBJECT_DEPENDS "${folder}/vesk.ico;${PROJECT_SOURCE_DIR}/windows/program.manifest"
        INCLUDE_DIRECTORIES ${folder})
    target_sources(${target} PRIVATE ${folder}/program.rc ${folder}/vesk.ico)
    target_link_options(${target} PRIVATE $<$<BOOL:${VESK_LIBRARIES}>:-static> LINKER:--no-insert-timestamp $<$<CONFIG:Release>:-s>)
endfunction()
