#include "tests/faults/engine/FaultRun.h"

#include <memory>
#include <utility>

#include "foundation/text/Text.h"
#include "hosts/HostModel.h"
#include "steps/install/InstallFilesController.h"
#include "steps/install/InstallFilesModel.h"
#include "tests/support/FailingAuthorizations.h"
#include "tests/support/FailingFileManager.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {

namespace {

std::vector<HostModel> hostsOf(Platform& platform) {
    return {
        PhotoshopHostModel::initWithHostName(platform, "Adobe Photoshop CC 2020"),
        PhotoshopHostModel::initWithHostName(platform, "Adobe Photoshop CC 2019"),
        UnknownHostModel(platform, platform.searchPaths.onTargetVolume(fault_scene::pickedFolder))};
}

std::vector<std::string> withoutVolume(std::vector<std::string> texts, const std::string& volume) {
    if (volume.empty()) return texts;
    for (std::string& text : texts) text = replacingAll(text, volume, "");
    return texts;
}

}  // namespace

void prepareFaultScene(FakePlatform& fake, const std::string& volume) {
    fake.bundle.tables["Localizable"] = {{"installing_file", "Installing "},
                                         {"install_error_title", "Sorry"},
                                         {"install_error_format_string", "[%@] failed at %@"},
                                         {"install_error_proceed", "Go on"}};
    fake.bundle.folder = volume + "/Installer.app";
    fake.searchPaths.volume = volume;
}

RunReport runInstallStep(FakePlatform& fake, FileManager& files, Authorizations& authorizations,
                         Faults& faults, const std::function<void()>& atStart) {
    fake.log.lines.clear();
    fake.alerts.shown.clear();
    Platform sound = platformWith(files, authorizations, fake);
    FailingFileManager failingFiles(files, faults);
    FailingAuthorizations failingAuthorizations(authorizations, faults);
    Platform platform = platformWith(failingFiles, failingAuthorizations, fake);

    std::vector<std::string> events;
    FakeMainController main(events);
    main.found = hostsOf(sound);
    main.selected = main.found;
    main.configureEditors = true;
    InstallFilesController controller(platform);
    RunReport report;
    main.onNextView = [&] { report.successful = controller.successfulInstall(); };
    if (atStart) atStart();
    controller.didEnterWithModel(std::make_shared<InstallFilesModel>(platform),
                                 std::make_shared<FakeView>(), &main, 1);

    const std::string& volume = fake.searchPaths.volume;
    report.authDenied = controller.authDenied();
    report.installed = withoutVolume(controller.installedPaths(), volume);
    report.failed = withoutVolume(controller.failedPaths(), volume);
    report.log = withoutVolume(fake.log.lines, volume);
    report.hasAuthorization = !fake.log.has("SFAuthorization permit with rights error");
    report.alerts = fake.alerts.shown.size();
    for (const Faults::Call& call : faults.hits()) {
        report.hits.push_back(withoutVolume(call, volume));
    }
    return report;
}

}  // namespace installer::test
