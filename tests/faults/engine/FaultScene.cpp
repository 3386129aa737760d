#include "tests/faults/engine/FaultScene.h"

namespace installer::test::fault_scene {

namespace {

const std::string support = "/Library/Application Support";
const std::string product = support + "/Acme/Filters 2";
const std::string plugIns = support + "/Adobe/Plug-Ins/CC";
const std::string photoshop2019 = "/Applications/Adobe Photoshop CC 2019";
const std::string photoshop2020 = "/Applications/Adobe Photoshop CC 2020";
const std::string userSupport = home + "/Library/Application Support";

class DiskMaker {
  public:
    void file(const std::string& path, const std::string& contents,
              std::uint32_t permissions = 0644) {
        folderAbove(path);
        tree_[path] = {.type = FileType::regular, .contents = contents, .permissions = permissions};
    }
    void link(const std::string& path, const std::string& target) {
        folderAbove(path);
        tree_[path] = {.type = FileType::symbolicLink, .contents = target, .permissions = 0777};
    }
    void folder(const std::string& path) {
        folderAbove(path);
        tree_[path] = {.type = FileType::folder, .permissions = 0755};
    }

    /// An application with a program that may be executed, and a link in it.
    void application(const std::string& path, const std::string& version) {
        file(path + "/Contents/Info.plist", "version " + version);
        file(path + "/Contents/MacOS/program", "program " + version, 0755);
        link(path + "/Contents/Current", "MacOS");
    }

    [[nodiscard]] const DiskTree& tree() const { return tree_; }

  private:
    void folderAbove(const std::string& path) {
        const std::string parent = path.substr(0, path.rfind('/'));
        if (!parent.empty() && !tree_.contains(parent)) folder(parent);
    }

    DiskTree tree_;
};

void addPayload(DiskMaker& disk) {
    const std::string mirror = payload + "/HD";
    disk.application(mirror + "/Applications/Tool.app", "2.0");
    disk.application(mirror + "/Applications/Newcomer.app", "2.0");
    disk.file(mirror + product + "/guide.txt", "the new guide");
    disk.file(mirror + product + "/new.txt", "not there before");
    disk.application(mirror + product + "/Engine.bundle", "2.0");
    disk.file(mirror + product + "/Looks/warm.look", "warmer");
    disk.file(mirror + product + "/Looks/deep/cold.look", "colder");
    disk.application(mirror + product + "/Looks/Pack.bundle", "2.0");
    disk.file(mirror + support + "/Acme/Extras/notes.txt", "notes");
    disk.file(payload + "/PHOTOSHOP/Presets/run.jsx", "run()");
    disk.file(payload + "/PHOTOSHOP/about.txt", "about 2.0");
    disk.application(payload + "/PHOTOSHOP_PLUGINS/F.plugin", "2.0");
    disk.file(payload + "/PHOTOSHOP_PLUGINS/lib/extra.8bf", "extra");
}

/// What an earlier version of the product, and its user, have put where the new one goes.
void addEarlierInstallation(DiskMaker& disk) {
    disk.application("/Applications/Tool.app", "1.0");
    disk.file("/Applications/Tool.app/Contents/stale", "only in 1.0");
    disk.file(product + "/guide.txt", "the old guide");
    disk.link(product + "/Engine.bundle", "/Users/tester/Engine.bundle");
    disk.application(home + "/Engine.bundle", "9.0");
    disk.file(product + "/Looks/mine.look", "made by the user");
    disk.application(product + "/Looks/Pack.bundle", "3.0");
    disk.application(plugIns + "/F.plugin", "9.9");
    disk.file(photoshop2019 + "/about.txt", "about 1.0");
    disk.file(editorList, "/Applications/Mine.app,Mine,4,2,1003,100,ORIGINAL, \n");
    for (const std::string& manifest : staleManifests) disk.file(manifest, "<manifest/>");
    std::string oldLog;
    for (int line = 0; line < 40; ++line) {
        oldLog += product + "/item of the earlier version " + std::to_string(line) + "\n";
    }
    disk.file(installerLog, oldLog);
}

void addNeighbours(DiskMaker& disk) {
    disk.folder(photoshop2019 + "/Adobe Photoshop CC 2019.app");
    disk.file(photoshop2019 + "/Presets/of the user.jsx", "mine()");
    disk.folder(photoshop2020 + "/Adobe Photoshop CC 2020.app");
    disk.application(plugIns + "/Other.plugin", "4.0");
    disk.folder(siblingEditor);
    disk.file("/Applications/manifest.xml", "another maker's");
    disk.file(product + "/kept.txt", "an older file that the new version does not have");
    disk.file(userSupport + "/Acme/settings.xml", "settings");
    disk.file(userSupport + "/Acme/Kept.bundle/manifest.xml", "part of a bundle");
    disk.file(userSupport + "/Other/manifest.xml", "another maker's");
    disk.file(support + "/Acme/Prismor X/presets.csv", "of the user");
    disk.folder(home + "/Library/Preferences");
    disk.folder("/Volumes/Pictures");
}

}  // namespace

DiskTree disk() {
    DiskMaker maker;
    addPayload(maker);
    addEarlierInstallation(maker);
    addNeighbours(maker);
    return maker.tree();
}

std::vector<ExpectedItem> items() {
    std::vector<ExpectedItem> items;
    const auto mirrored = [&](const std::string& path, bool isReplacedLater = false) {
        items.push_back({payload + "/HD" + path, path, false, isReplacedLater});
    };
    mirrored("/Applications/Tool.app");
    mirrored("/Applications/Newcomer.app");
    mirrored(product + "/guide.txt");
    mirrored(product + "/new.txt");
    mirrored(product + "/Engine.bundle");
    mirrored(product + "/Looks");
    // Installed as a bundle first, then once more as a part of its folder.
    mirrored(product + "/Looks/Pack.bundle", true);
    mirrored(support + "/Acme/Extras/notes.txt");
    for (const std::string& application : {photoshop2019, photoshop2020}) {
        for (const char* name : {"/Presets/run.jsx", "/about.txt"}) {
            items.push_back({payload + "/PHOTOSHOP" + name, application + name, true, false});
        }
    }
    // The two applications share a plug-in folder.
    for (const std::string& folder : {plugIns, pickedFolder}) {
        for (const char* name : {"/F.plugin", "/lib/extra.8bf"}) {
            items.push_back(
                {payload + "/PHOTOSHOP_PLUGINS" + name, folder + name, true, folder == plugIns});
        }
    }
    return items;
}

std::string newEditorList() {
    return photoshop2020 +
           "/Adobe Photoshop CC 2020.app,Adobe Photoshop CC 2020,9,2,1003,100,ORIGINAL, \n" +
           siblingEditor + ",Inkvale 4,4,2,1003,100,ORIGINAL, \n";
}

}  // namespace installer::test::fault_scene
