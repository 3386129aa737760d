# The target `bundle` puts the sample product's installer together as every maker does: with
# mkinstaller, from a product's folder, which is gathered from resources/ and payload/. It runs at
# every build: what it copies has no list in the build system, so only a fresh copy is sure to be
# whole and to hold nothing that the sources lost.
set(INSTALLER_BUNDLE "${PROJECT_BINARY_DIR}/Quarrytone Tonewright 2 Installer.app")

add_custom_target(bundle ALL
    COMMAND ${CMAKE_COMMAND}
        "-DPRODUCT=${PROJECT_BINARY_DIR}/sample"
        "-DRESOURCES=${PROJECT_SOURCE_DIR}/resources"
        "-DPAYLOAD=${PROJECT_SOURCE_DIR}/payload"
        -P "${PROJECT_SOURCE_DIR}/cmake/GatherSample.cmake"
    COMMAND mkinstaller build "${PROJECT_BINARY_DIR}/sample" --output "${PROJECT_BINARY_DIR}"
    COMMENT "Assembling ${INSTALLER_BUNDLE}"
    VERBATIM)
add_dependencies(bundle mkinstaller mkinstaller_runtime)
