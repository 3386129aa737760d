# cmake -DRUNTIME=... -DRESOURCES=... -DEXPLANATIONS=... -DRUN_HEAD=... -DINSTALLER=...
#     -DHELPER=... -DINSTALLERCTL=... -DWINDOW_MODULE=... -P MakeRuntime.cmake
#
# Gathers what mkinstaller puts into every bundle, and the texts that a new product begins with.
# Fills a folder beside the old one and swaps it in, as the bundle is made.
foreach(argument IN ITEMS RUNTIME RESOURCES EXPLANATIONS RUN_HEAD INSTALLER HELPER INSTALLERCTL WINDOW_MODULE)
    if(NOT DEFINED ${argument})
        message(FATAL_ERROR "MakeRuntime.cmake needs -D${argument}=...")
    endif()
endforeach()

set(fresh "${RUNTIME}.new")
set(contents "${fresh}/Contents")
file(REMOVE_RECURSE "${fresh}")

set(executable OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
file(COPY "${INSTALLER}" "${HELPER}" "${INSTALLERCTL}" DESTINATION "${contents}/MacOS" FILE_PERMISSIONS ${executable})
file(COPY "${WINDOW_MODULE}" DESTINATION "${contents}/Frameworks"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
include("${CMAKE_CURRENT_LIST_DIR}/CarriedLibraries.cmake")
carry_libraries("${contents}" "${INSTALLER}")

# The layouts and pictures that a product has unless it brings its own.
file(GLOB shared "${RESOURCES}/*.ui" "${RESOURCES}/*.png" "${RESOURCES}/*.tiff")
file(COPY ${shared} DESTINATION "${contents}/Resources")

file(GLOB languages "${RESOURCES}/*.lproj")
file(COPY ${languages} DESTINATION "${fresh}/texts")
file(COPY_FILE "${EXPLANATIONS}" "${fresh}/lint.md")
file(COPY_FILE "${RUN_HEAD}" "${fresh}/run-head.sh")

file(REMOVE_RECURSE "${RUNTIME}")
file(RENAME "${fresh}" "${RUNTIME}")
