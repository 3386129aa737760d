local LrApplication = import "LrApplication"
local LrShell = import "LrShell"

local program = "/Applications/Quarrytone Tonewright 2.app"
for _, photo in ipairs(LrApplication.activeCatalog():getTargetPhotos()) do
    LrShell.openFilesInApp({ photo:getRawMetadata("path") }, program)
end
