# cmake -DBUNDLE=... -DRESOURCES=... -DPAYLOAD=... -DINSTALLER=... -DHELPER=... -DINSTALLERCTL=... -DWINDOW_MODULE=...
#     -P MakeBundle.cmake
#
# Fills a folder beside the bundle and swaps it in when it is complete, so a failed copy leaves the
# bundle of the last build. Modes and times are kept, and symbolic links stay links.
foreach(argument IN ITEMS BUNDLE RESOURCES PAYLOAD INSTALLER HELPER INSTALLERCTL WINDOW_MODULE)
    if(NOT DEFINED ${argument})
        message(FATAL_ERROR "MakeBundle.cmake needs -D${argument}=...")
    endif()
endforeach()

set(fresh "${BUNDLE}.new")
set(contents "${fresh}/Contents")
file(REMOVE_RECURSE "${fresh}")

file(MAKE_DIRECTORY "${contents}/Resources")
file(COPY "${RESOURCES}/" DESTINATION "${contents}/Resources" PATTERN "Info.plist" EXCLUDE)
file(COPY "${RESOURCES}/Info.plist" DESTINATION "${contents}")

# British English differs in the spelling of one word, so nobody keeps a second copy of the texts. The
# word is changed where a blank or the end of a text follows it: never in a key or a file's name.
file(GLOB english RELATIVE "${RESOURCES}/en.lproj" "${RESOURCES}/en.lproj/*")
foreach(name IN LISTS english)
    file(READ "${RESOURCES}/en.lproj/${name}" text)
    string(REGEX REPLACE "([Ll])icense( |\";)" "\\1icence\\2" text "${text}")
    file(WRITE "${contents}/Resources/en_GB.lproj/${name}" "${text}")
endforeach()

# A payload without one of the two is a bundle that lacks it; the installer copes with that.
if(EXISTS "${PAYLOAD}/files")
    file(COPY "${PAYLOAD}/files" DESTINATION "${contents}/Resources")
endif()
if(EXISTS "${PAYLOAD}/SharedSupport")
    file(COPY "${PAYLOAD}/SharedSupport" DESTINATION "${contents}")
endif()

set(executable OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
file(COPY "${INSTALLER}" "${HELPER}" "${INSTALLERCTL}" DESTINATION "${contents}/MacOS" FILE_PERMISSIONS ${executable})
file(COPY "${WINDOW_MODULE}" DESTINATION "${contents}/Frameworks"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
include("${CMAKE_CURRENT_LIST_DIR}/CarriedLibraries.cmake")
carry_libraries("${contents}" "${INSTALLER}")

file(REMOVE_RECURSE "${BUNDLE}")
file(RENAME "${fresh}" "${BUNDLE}")
