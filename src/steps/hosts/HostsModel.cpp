#include "steps/hosts/HostsModel.h"

#include <utility>

#include "foundation/text/Format.h"
#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "ports/Bundle.h"
#include "ports/Platform.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

std::string instructions(const Bundle& bundle) {
    const std::string productName = installerText(bundle, "product_name");
    return formatted(localizedText(bundle, "select_host_instructions"), {productName, productName});
}

}  // namespace

HostsModel::HostsModel(Platform& platform) : HostsModel(platform.bundle, HostDiscovery(platform)) {}

HostsModel::HostsModel(const Bundle& bundle, HostDiscovery discovery)
    : mainLabelText_(localizedText(bundle, "select_host")),
      stepIndicatorLabelText_(localizedText(bundle, "host_selection")),
      informativeText_(instructions(bundle)),
      customInstallBrowseButtonText_(localizedText(bundle, "custom_install_browse_button")),
      customInstallPathLabelText_(localizedText(bundle, "custom_install_label_path")),
      customInstallButtonText_(localizedText(bundle, "custom_install_button")),
      customInstallCheckBoxText_(localizedText(bundle, "custom_install_panels_checkbox")),
      customInstallHostsExplanationText_(localizedText(bundle, "custom_install_host_label")) {
    hostsArray_ = discovery.discoverHosts();
    notOffered_ = discovery.notOffered();
}

std::vector<HostModel> HostsModel::foundHosts() const {
    return installer::foundHosts(hostsArray_);
}

std::vector<HostModel> HostsModel::scriptsOrPanelsHosts() const {
    return {};
}

void HostsModel::addHostAtRuntime(HostModel host) {
    hostsArray_.push_back(std::move(host));
}

void HostsModel::removeHostAtRuntime(const HostModel& host) {
    // Copied, since the argument may refer to an entry of this list.
    std::erase_if(hostsArray_,
                  [removed = host](const HostModel& entry) { return entry == removed; });
}

std::optional<std::string> HostsModel::mainLabelText() const {
    return mainLabelText_;
}

std::string HostsModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText HostsModel::informativeText() const {
    return informativeText_;
}

const std::string& HostsModel::customInstallBrowseButtonText() const {
    return customInstallBrowseButtonText_;
}

const std::string& HostsModel::customInstallPathLabelText() const {
    return customInstallPathLabelText_;
}

const std::string& HostsModel::customInstallButtonText() const {
    return customInstallButtonText_;
}

const std::string& HostsModel::customInstallCheckBoxText() const {
    return customInstallCheckBoxText_;
}

const std::string& HostsModel::customInstallHostsExplanationText() const {
    return customInstallHostsExplanationText_;
}

}  // namespace installer
