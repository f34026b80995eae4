# Run by cpack before it closes the Debian package: what Debian wants of a package beyond the
# installed tree.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
set(doc ${root}/usr/share/doc/vesk)

function(as_data file)
    file(CHMOD ${file} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

function(place source target)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${source} ${target} COPYONLY)
    as_data(${target})
endfunction()

function(compress file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
    as_data(${file}.gz)
endfunction()

place(copyright ${doc}/copyright)
place(changelog ${doc}/changelog.Debian)
place(lintian-overrides ${root}/usr/share/lintian/overrides/vesk)
compress(${doc}/changelog.Debian)
compress(${root}/usr/share/man/man6/vesk.6)
compress(${root}/usr/share/man/man6/vesk_atlas.6)

# Debian's folder for the commands of games.
file(RENAME ${root}/usr/bin ${root}/usr/games)

# A player's changes of the configuration must outlive an update, so it lies where Debian keeps
# such files.
file(MAKE_DIRECTORY ${root}/etc/vesk)
file(RENAME ${root}/usr/lib/vesk/vesk.ini ${root}/etc/vesk/vesk.ini)
file(CREATE_LINK /etc/vesk/vesk.ini ${root}/usr/lib/vesk/vesk.ini SYMBOLIC)

# Every file bears the time of the last commit, so that the package comes out the same whenever and
# wherever it is made.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(
        COMMAND find ${root} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
        COMMAND_ERROR_IS_FATAL ANY)
endif()
