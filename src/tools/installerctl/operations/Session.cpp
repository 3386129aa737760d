#include "tools/installerctl/operations/Session.h"

#include <algorithm>

#include <unistd.h>

#include "foundation/text/Text.h"
#include "linux/bundle/LinuxBundle.h"
#include "linux/process/Environment.h"
#include "linux/seal/BundleSeal.h"
#include "product/LocalizedText.h"
#include "tools/installerctl/machine/Notes.h"

namespace installer {

namespace {

/// The names as an identifier: what cannot stand in one becomes "-".
std::string madeIdentifier(const std::string& company, const std::string& product) {
    std::string made = lowerCased(company + "." + product);
    for (char& character : made) {
        if (!isReceiptName("x" + std::string(1, character))) character = '-';
    }
    return "installer." + made;
}

ProductIdentity identityOf(const Bundle& bundle) {
    ProductIdentity identity;
    identity.company = folderName(bundle, "company_name");
    identity.product = folderName(bundle, "product_name");
    identity.identifier = bundle.informationValue("CFBundleIdentifier").value_or("");
    if (!isReceiptName(identity.identifier)) {
        identity.identifier = madeIdentifier(identity.company, identity.product);
    }
    const auto version = bundle.informationValue("CFBundleShortVersionString");
    identity.version =
        version ? *version : bundle.informationValue("CFBundleVersion").value_or("0");
    return identity;
}

std::string volumeOf(const Scope& scope) {
    if (!scope.target.empty()) return scope.target;
    return processEnvironment()(targetVolumeVariable).value_or("");
}

bool actsForOthers(const FoundUsers& found) {
    const auto own = userNumbered(::geteuid());
    return std::ranges::any_of(found.users, [&](const UserAccount& user) {
        return !own || own.value().name != user.name;
    });
}

}  // namespace

std::unique_ptr<Session> Session::open(const Scope& scope, Refusal& refusal) {
    const auto bundleFolder = LinuxBundle::runningBundleFolder();
    if (!bundleFolder) {
        refusal = {ExitStatus::bundleUnusable, "the program lies in no installer's bundle"};
        return nullptr;
    }
    if (const auto problem = brokenSealOf(*bundleFolder)) {
        refusal = {ExitStatus::bundleUnusable, *problem};
        return nullptr;
    }
    const FoundUsers found = usersAskedFor(scope.users, volumeOf(scope));
    if (!found.unknown.empty()) {
        refusal = {ExitStatus::wrongUse, "there is no user " + found.unknown};
        return nullptr;
    }
    const bool asksForOthers = !scope.users.logins.empty() || scope.users.everybody;
    if (asksForOthers && ::geteuid() != 0 && actsForOthers(found)) {
        refusal = {ExitStatus::rightsRefused, "only root can act for other users"};
        return nullptr;
    }
    std::unique_ptr<Session> session(new Session());
    for (const UserAccount& user : found.users) {
        auto machine = UserMachine::of(user, *bundleFolder, scope.target);
        if (!machine) {
            refusal = {ExitStatus::wrongUse, "there is no folder to install onto at " +
                                                 volumeOf(scope) + ": " +
                                                 machine.error().message()};
            return nullptr;
        }
        session->machines_.push_back(std::move(machine).value());
    }
    session->product_ = identityOf(session->machine().platform().bundle);
    return session;
}

std::string Session::diskRoot() const {
    const std::string volume = machine().searchPaths().targetVolume();
    return volume.empty() ? "/" : volume;
}

Report Session::report(const std::string& command) const {
    Report report;
    report.command = command;
    report.identifier = product_.identifier;
    report.product = product_.company + " " + product_.product;
    report.version = product_.version;
    for (const auto& user : machines_) report.users.push_back(user->login());
    return report;
}

int compareVersions(const std::string& left, const std::string& right) {
    const auto leftParts = split(left, '.');
    const auto rightParts = split(right, '.');
    for (std::size_t part = 0; part < std::max(leftParts.size(), rightParts.size()); ++part) {
        const auto leftNumber = part < leftParts.size() ? integerValue(leftParts[part]) : 0;
        const auto rightNumber = part < rightParts.size() ? integerValue(rightParts[part]) : 0;
        if (leftNumber != rightNumber) return leftNumber < rightNumber ? -1 : 1;
    }
    return 0;
}

}  // namespace installer
