# cmake -DPRODUCT=... -DRESOURCES=... -DPAYLOAD=... -P GatherSample.cmake
#
# Makes the folder of the sample product: what it says and shows, and what it installs. Modes and
# times are kept, and symbolic links stay links.
foreach(argument IN ITEMS PRODUCT RESOURCES PAYLOAD)
    if(NOT DEFINED ${argument})
        message(FATAL_ERROR "GatherSample.cmake needs -D${argument}=...")
    endif()
endforeach()

file(REMOVE_RECURSE "${PRODUCT}")
file(COPY "${RESOURCES}/" "${PAYLOAD}/" DESTINATION "${PRODUCT}")
