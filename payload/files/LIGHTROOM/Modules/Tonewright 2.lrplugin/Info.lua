return {
    LrSdkVersion = 5.0,
    LrToolkitIdentifier = "com.quarrytone.tonewright2.lightroom",
    LrPluginName = "Tonewright 2",
    LrExportMenuItems = { { title = "Edit in Tonewright 2", file = "EditInTonewright.lua" } },
    VERSION = { major = 2, minor = 0, revision = 1 },
}
