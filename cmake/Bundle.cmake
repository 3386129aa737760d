# The target `bundle` puts the sample product's installer together from the three executables, the
# window module, resources/ and payload/. It runs at every build: what it copies has no list in the
# build system, so only a fresh copy is sure to be whole and to hold nothing that the sources lost.
set(INSTALLER_BUNDLE "${PROJECT_BINARY_DIR}/Quarrytone Tonewright 2 Installer.app")

add_custom_target(bundle ALL
    COMMAND ${CMAKE_COMMAND}
        "-DBUNDLE=${INSTALLER_BUNDLE}"
        "-DRESOURCES=${PROJECT_SOURCE_DIR}/resources"
        "-DPAYLOAD=${PROJECT_SOURCE_DIR}/payload"
        "-DINSTALLER=$<TARGET_FILE:Installer>"
        "-DHELPER=$<TARGET_FILE:privileged-helper>"
        "-DINSTALLERCTL=$<TARGET_FILE:installerctl>"
        "-DWINDOW_MODULE=$<TARGET_FILE:InstallerWindow>"
        -P "${PROJECT_SOURCE_DIR}/cmake/MakeBundle.cmake"
    COMMENT "Assembling ${INSTALLER_BUNDLE}"
    VERBATIM)
add_dependencies(bundle Installer InstallerWindow privileged-helper installerctl)
