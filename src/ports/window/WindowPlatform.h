#pragma once

#include "ports/Platform.h"

namespace installer {

class Clipboard;
class FolderPanel;
class InterfaceLoader;
class Workspace;

/// What the core asks of a machine on which it has a window.
struct WindowPlatform : Platform {
    InterfaceLoader& interfaces;
    FolderPanel& folderPanel;
    Workspace& workspace;
    Clipboard& clipboard;
};

}  // namespace installer
