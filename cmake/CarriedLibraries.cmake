# carry_libraries(CONTENTS EXECUTABLE) copies the libraries of the executable that not every system
# has into the bundle's Frameworks, where it looks first: libplist, of which there is no static one.
function(carry_libraries contents executable)
    file(GET_RUNTIME_DEPENDENCIES
        EXECUTABLES "${executable}"
        RESOLVED_DEPENDENCIES_VAR libraries
        PRE_INCLUDE_REGEXES "^libplist-"
        PRE_EXCLUDE_REGEXES ".*")
    foreach(library IN LISTS libraries)
        get_filename_component(name "${library}" NAME)
        file(COPY_FILE "${library}" "${contents}/Frameworks/${name}")
    endforeach()
endfunction()
