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

# British English differs in the spelling of one word, so nobody keeps a second copy of the texts. The
# word is changed where a blank or the end of a text follows it: never in a key or a file's name.
file(GLOB english RELATIVE "${RESOURCES}/en.lproj" "${RESOURCES}/en.lproj/*")
foreach(name IN LISTS english)
    file(READ "${RESOURCES}/en.lproj/${name}" text)
    string(REGEX REPLACE "([Ll])icense( |\";)" "\\1icence\\2" text "${text}")
    file(WRITE "${PRODUCT}/en_GB.lproj/${name}" "${text}")
endforeach()
