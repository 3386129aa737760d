# What the fuzzers exercise, and what that needs, with the counters that guide a fuzzer. A list of
# its own: building the whole of the libraries would take longer than the fuzzing.
add_library(installer_fuzzed STATIC
    ${source}/foundation/Format.cpp
    ${source}/foundation/LowerCase.cpp
    ${source}/foundation/NotificationCenter.cpp
    ${source}/foundation/Observable.cpp
    ${source}/foundation/Paths.cpp
    ${source}/foundation/RtfReader.cpp
    ${source}/foundation/StyledText.cpp
    ${source}/foundation/Text.cpp
    ${source}/foundation/Utf8.cpp
    ${source}/foundation/Uuid.cpp
    ${source}/foundation/rtf/CodePages.cpp
    ${source}/foundation/rtf/ColorTable.cpp
    ${source}/foundation/rtf/ControlWords.cpp
    ${source}/foundation/rtf/DocumentBuilder.cpp
    ${source}/foundation/rtf/Fields.cpp
    ${source}/foundation/rtf/FontTable.cpp
    ${source}/foundation/rtf/Interpreter.cpp
    ${source}/foundation/rtf/JapaneseTable.cpp
    ${source}/foundation/rtf/SingleByteTables.cpp
    ${source}/foundation/rtf/TextDecoder.cpp
    ${source}/foundation/rtf/TextFormat.cpp
    ${source}/foundation/rtf/Tokenizer.cpp
    ${source}/helper/Message.cpp
    ${source}/helper/MessageStream.cpp
    ${source}/hosts/ApertureHostModel.cpp
    ${source}/hosts/FireworksHostModel.cpp
    ${source}/hosts/HostLists.cpp
    ${source}/hosts/HostModel.cpp
    ${source}/hosts/HostsModel.cpp
    ${source}/hosts/LightRoomHostModel.cpp
    ${source}/hosts/PhotoshopHostModel.cpp
    ${source}/hosts/UnknownHostModel.cpp
    ${source}/install/DecimalNumber.cpp
    ${source}/install/PlugInFilesModel.cpp
    ${source}/platform/linux/AdminGroup.cpp
    ${source}/platform/linux/ApplicationName.cpp
    ${source}/platform/linux/DesktopEntry.cpp
    ${source}/platform/linux/Environment.cpp
    ${source}/platform/linux/LinuxBundle.cpp
    ${source}/platform/linux/LinuxFileManager.cpp
    ${source}/platform/linux/LinuxSearchPaths.cpp
    ${source}/platform/linux/PreferredLanguages.cpp
    ${source}/platform/linux/ProcessFacts.cpp
    ${source}/platform/linux/PropertyList.cpp
    ${source}/platform/linux/PropertyListShape.cpp
    ${source}/platform/linux/RegularFile.cpp
    ${source}/platform/linux/StringsTable.cpp
    ${source}/platform/linux/StringsTableText.cpp
    ${source}/platform/linux/VisibleText.cpp
    ${source}/platform/linux/files/EntryCopy.cpp
    ${source}/platform/linux/files/EntryMode.cpp
    ${source}/platform/linux/files/ExclusiveRename.cpp
    ${source}/platform/linux/files/ExtendedAttributes.cpp
    ${source}/platform/linux/files/FileContents.cpp
    ${source}/platform/linux/files/FolderChain.cpp
    ${source}/platform/linux/files/FolderCopy.cpp
    ${source}/platform/linux/files/FolderCreation.cpp
    ${source}/platform/linux/files/FolderListing.cpp
    ${source}/platform/linux/files/Location.cpp
    ${source}/platform/linux/files/TakeApart.cpp
    ${source}/platform/linux/files/Temporary.cpp
    ${source}/platform/linux/files/TreeAttributes.cpp
    ${source}/platform/linux/files/TreeCopy.cpp
    ${source}/platform/linux/files/TreeRemoval.cpp
    ${source}/platform/linux/files/TreeSize.cpp
    ${source}/platform/linux/files/TreeWalk.cpp
    ${source}/platform/linux/files/WriteAll.cpp
    ${source}/wizard/BundleUserDefaults.cpp
    ${source}/wizard/LocalizedText.cpp
    ../support/FakeAuthorization.cpp
    ../support/FakeFileQuery.cpp
    ../support/FakePlatform.cpp
    ../support/MemoryFileManager.cpp
    ../support/RecordingFileManager.cpp
)
target_include_directories(installer_fuzzed PUBLIC ${PROJECT_SOURCE_DIR}/tests)
# The library's own checks notice a place beyond a text's end that no sanitizer sees.
target_compile_definitions(installer_fuzzed PUBLIC _GLIBCXX_ASSERTIONS)
# Warnings are for the compiler that builds what ships, and for the static analysis.
target_compile_options(installer_fuzzed PUBLIC -fsanitize=fuzzer-no-link -w)
target_link_libraries(installer_fuzzed PUBLIC installer_options PkgConfig::PLIST)
# Half of the time to compile a file goes into these.
target_precompile_headers(installer_fuzzed PRIVATE
    <algorithm> <filesystem> <functional> <map> <memory> <optional> <string> <string_view>
    <system_error> <variant> <vector>)
