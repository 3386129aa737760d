# What the fuzzers exercise, and what that needs, with the counters that guide a fuzzer. A list of
# its own: building the whole of the libraries would take longer than the fuzzing.
add_library(installer_fuzzed STATIC
    ${source}/foundation/text/Format.cpp
    ${source}/foundation/text/LowerCase.cpp
    ${source}/foundation/observers/NotificationCenter.cpp
    ${source}/foundation/observers/Observable.cpp
    ${source}/foundation/values/Paths.cpp
    ${source}/foundation/rtf/RtfReader.cpp
    ${source}/foundation/text/ShownLength.cpp
    ${source}/foundation/text/StyledText.cpp
    ${source}/foundation/text/Text.cpp
    ${source}/foundation/values/SystemFolders.cpp
    ${source}/foundation/values/WriteGrant.cpp
    ${source}/foundation/values/Utf8.cpp
    ${source}/foundation/values/VisibleText.cpp
    ${source}/foundation/values/Uuid.cpp
    ${source}/foundation/rtf/codepages/CodePages.cpp
    ${source}/foundation/rtf/ColorTable.cpp
    ${source}/foundation/rtf/ControlWords.cpp
    ${source}/foundation/rtf/DocumentBuilder.cpp
    ${source}/foundation/rtf/Fields.cpp
    ${source}/foundation/rtf/FontTable.cpp
    ${source}/foundation/rtf/Interpreter.cpp
    ${source}/foundation/rtf/codepages/JapaneseTable.cpp
    ${source}/foundation/rtf/codepages/SingleByteTables.cpp
    ${source}/foundation/rtf/TextDecoder.cpp
    ${source}/foundation/rtf/TextFormat.cpp
    ${source}/foundation/rtf/Tokenizer.cpp
    ${source}/privileged/protocol/Message.cpp
    ${source}/privileged/protocol/MessageStream.cpp
    ${source}/hosts/ApertureHostModel.cpp
    ${source}/hosts/FireworksHostModel.cpp
    ${source}/hosts/HostDiscovery.cpp
    ${source}/hosts/HostLists.cpp
    ${source}/hosts/HostModel.cpp
    ${source}/hosts/LightRoomHostModel.cpp
    ${source}/hosts/PhotoshopHostModel.cpp
    ${source}/hosts/UnknownHostModel.cpp
    ${source}/install/engine/DecimalNumber.cpp
    ${source}/product/PlugInFilesModel.cpp
    ${source}/privileged/system/Accounts.cpp
    ${source}/privileged/system/AdminGroup.cpp
    ${source}/privileged/system/FileSystemUser.cpp
    ${source}/linux/desktop/ApplicationName.cpp
    ${source}/linux/desktop/DesktopEntry.cpp
    ${source}/linux/process/Environment.cpp
    ${source}/linux/bundle/LinuxBundle.cpp
    ${source}/linux/bundle/PackageLayout.cpp
    ${source}/linux/files/CopyStager.cpp
    ${source}/linux/files/CopyThreads.cpp
    ${source}/linux/files/FilledFolder.cpp
    ${source}/linux/files/FolderReading.cpp
    ${source}/linux/files/LinuxFileManager.cpp
    ${source}/linux/files/LinuxSearchPaths.cpp
    ${source}/linux/process/PreferredLanguages.cpp
    ${source}/linux/desktop/ProcessFacts.cpp
    ${source}/linux/bundle/PropertyList.cpp
    ${source}/linux/bundle/PropertyListShape.cpp
    ${source}/linux/seal/Base64.cpp
    ${source}/linux/seal/BundleManifest.cpp
    ${source}/linux/seal/Minisign.cpp
    ${source}/privileged/files/RegularFile.cpp
    ${source}/linux/bundle/StringsTable.cpp
    ${source}/linux/bundle/StringsTableText.cpp
    ${source}/privileged/copies/EntryCopy.cpp
    ${source}/privileged/files/EntryMode.cpp
    ${source}/privileged/files/ExclusiveRename.cpp
    ${source}/privileged/copies/ExtendedAttributes.cpp
    ${source}/privileged/copies/FileContents.cpp
    ${source}/privileged/files/FolderChain.cpp
    ${source}/privileged/copies/FinishedTree.cpp
    ${source}/privileged/copies/FolderCopy.cpp
    ${source}/privileged/copies/NamelessFile.cpp
    ${source}/privileged/copies/PieceGroup.cpp
    ${source}/privileged/files/FolderCreation.cpp
    ${source}/privileged/files/FolderListing.cpp
    ${source}/privileged/files/Location.cpp
    ${source}/privileged/files/PathWalk.cpp
    ${source}/privileged/trees/TakeApart.cpp
    ${source}/privileged/trees/Temporary.cpp
    ${source}/privileged/trees/TreeAttributes.cpp
    ${source}/privileged/copies/TreeCopy.cpp
    ${source}/privileged/trees/TreeRemoval.cpp
    ${source}/privileged/trees/TreeSize.cpp
    ${source}/privileged/trees/TreeWalk.cpp
    ${source}/privileged/system/WriteAll.cpp
    ${source}/product/BundleUserDefaults.cpp
    ${source}/product/LocalizedText.cpp
    ${source}/tools/installerctl/records/EntryMap.cpp
    ${source}/tools/installerctl/records/EntryRecord.cpp
    ${source}/tools/installerctl/records/Receipt.cpp
    ../support/FakeAuthorization.cpp
    ../support/FakeChildProcess.cpp
    ../support/FakeEventLoop.cpp
    ../support/FakeFileQuery.cpp
    ../support/FakePlatform.cpp
    ../support/MemoryFileManager.cpp
    ../support/MemoryFileManagerScene.cpp
    ../support/RecordingFileManager.cpp
)
target_include_directories(installer_fuzzed PUBLIC ${PROJECT_SOURCE_DIR})
# The library's own checks notice a place beyond a text's end that no sanitizer sees.
target_compile_definitions(installer_fuzzed PUBLIC _GLIBCXX_ASSERTIONS)
# Warnings are for the compiler that builds what ships, and for the static analysis.
target_compile_options(installer_fuzzed PUBLIC -fsanitize=fuzzer-no-link -w)
find_library(SODIUM_ARCHIVE libsodium.a REQUIRED)
target_link_libraries(installer_fuzzed PUBLIC installer_options nlohmann_json::nlohmann_json
    PkgConfig::PLIST ${SODIUM_ARCHIVE})
