#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "linux/rights/HelperCommand.h"

namespace installer::test {
namespace {

using Environment = SpawnRequest::Environment;

AdministratorMeans desktop() {
    AdministratorMeans means;
    means.pkexec = "/usr/bin/pkexec";
    means.hasSystemBus = true;
    means.sudo = "/usr/bin/sudo";
    return means;
}

HelperPlace at(const std::string& path) {
    return {.path = path, .volume = "", .home = ""};
}

AdministratorMeans withoutPolkit() {
    AdministratorMeans means = desktop();
    means.pkexec.clear();
    return means;
}

TEST(HelperCommandAdministratorWay, IsDirectForRoot) {
    AdministratorMeans means = desktop();
    means.isRoot = true;
    EXPECT_EQ(administratorWay(means), AdministratorWay::alreadyRoot);
}

TEST(HelperCommandAdministratorWay, IsPolkitEvenWhereSudoIsToo) {
    AdministratorMeans means = desktop();
    means.hasTerminal = true;
    means.hasAskpass = true;
    EXPECT_EQ(administratorWay(means), AdministratorWay::polkit);
}

TEST(HelperCommandAdministratorWay, IsSudoWherePkexecHasNobodyToAsk) {
    AdministratorMeans means = desktop();
    means.hasSystemBus = false;
    EXPECT_EQ(administratorWay(means), AdministratorWay::sudoWithoutAsking);
}

TEST(HelperCommandAdministratorWay, AsksThroughSudoWhereSomebodyCanAnswer) {
    AdministratorMeans means = withoutPolkit();
    EXPECT_EQ(administratorWay(means), AdministratorWay::sudoWithoutAsking);
    means.hasAskpass = true;
    EXPECT_EQ(administratorWay(means), AdministratorWay::sudoWithAskpass);
    means.hasTerminal = true;
    EXPECT_EQ(administratorWay(means), AdministratorWay::sudoOnTerminal);
}

TEST(HelperCommandAdministratorWay, IsNoneWithoutEither) {
    AdministratorMeans means;
    means.hasTerminal = true;
    means.hasAskpass = true;
    means.hasSystemBus = true;
    EXPECT_EQ(administratorWay(means), AdministratorWay::none);
    means.pkexec = "/usr/bin/pkexec";
    means.hasSystemBus = false;
    EXPECT_EQ(administratorWay(means), AdministratorWay::none);
}

TEST(HelperCommandAdministratorWay, AnnouncesOnlyWhereSomebodyMayBeAsked) {
    EXPECT_TRUE(mayAsk(AdministratorWay::polkit));
    EXPECT_TRUE(mayAsk(AdministratorWay::sudoOnTerminal));
    EXPECT_TRUE(mayAsk(AdministratorWay::sudoWithAskpass));
    EXPECT_FALSE(mayAsk(AdministratorWay::sudoWithoutAsking));
    EXPECT_FALSE(mayAsk(AdministratorWay::alreadyRoot));
    EXPECT_FALSE(mayAsk(AdministratorWay::none));
}

TEST(HelperCommand, ForPolkitNeverAsksByItself) {
    AdministratorMeans means = desktop();
    for (const bool hasTerminal : {false, true}) {
        means.hasTerminal = hasTerminal;
        const auto command = helperCommand(AdministratorWay::polkit, means, at("/helper"), "why");
        EXPECT_EQ(command.path, "/usr/bin/pkexec");
        EXPECT_EQ(command.arguments,
                  (std::vector<std::string>{"--disable-internal-agent", "/helper", "--started-by",
                                            "polkit"}));
        EXPECT_EQ(command.environment, Environment::empty);
    }
}

TEST(HelperCommandOfTheTerminalAgent, IsForPolkitOnATerminalOnly) {
    AdministratorMeans means = desktop();
    means.textAgent = "/usr/bin/pkttyagent";
    EXPECT_FALSE(terminalAgentCommand(AdministratorWay::polkit, means));
    means.hasTerminal = true;
    EXPECT_TRUE(terminalAgentCommand(AdministratorWay::polkit, means));
    EXPECT_FALSE(terminalAgentCommand(AdministratorWay::sudoOnTerminal, means));
    EXPECT_FALSE(terminalAgentCommand(AdministratorWay::alreadyRoot, means));
    means.textAgent.clear();
    EXPECT_FALSE(terminalAgentCommand(AdministratorWay::polkit, means));
}

TEST(HelperCommandOfTheTerminalAgent, StandsBehindTheDialoguesOfADesktop) {
    AdministratorMeans means = desktop();
    means.hasTerminal = true;
    means.textAgent = "/usr/bin/pkttyagent";
    std::vector<std::string> arguments = {"--process", std::to_string(::getpid()), "--notify-fd",
                                          "1"};
    EXPECT_EQ(terminalAgentCommand(AdministratorWay::polkit, means)->arguments, arguments);
    means.hasSessions = true;
    arguments.emplace_back("--fallback");
    EXPECT_EQ(terminalAgentCommand(AdministratorWay::polkit, means)->arguments, arguments);
}

TEST(HelperCommand, ForSudoNeverWaitsWhereNobodyCanAnswer) {
    const auto command =
        helperCommand(AdministratorWay::sudoWithoutAsking, desktop(), at("/helper"), "why");
    EXPECT_EQ(command.path, "/usr/bin/sudo");
    EXPECT_EQ(command.arguments,
              (std::vector<std::string>{"-n", "--", "/helper", "--started-by", "sudo"}));
}

TEST(HelperCommand, ForSudoSaysInItsPromptWhoAsks) {
    auto command =
        helperCommand(AdministratorWay::sudoOnTerminal, desktop(), at("-helper"), "100% why");
    EXPECT_EQ(command.arguments,
              (std::vector<std::string>{"-k", "-p", "100%% why\n[sudo] password for %p: ", "--",
                                        "-helper", "--started-by", "sudo"}));
    EXPECT_EQ(command.environment, Environment::inherited);
    command = helperCommand(AdministratorWay::sudoWithAskpass, desktop(), at("/helper"), "why");
    EXPECT_EQ(command.arguments,
              (std::vector<std::string>{"-k", "-A", "-p", "why\n[sudo] password for %p: ", "--",
                                        "/helper", "--started-by", "sudo"}));
}

TEST(HelperCommand, TellsTheHelperTheTargetVolumeAndTheHomeFolder) {
    const HelperPlace helper = {.path = "/helper", .volume = "/vol", .home = "/home/me"};
    EXPECT_EQ(helperCommand(AdministratorWay::sudoWithoutAsking, desktop(), helper, "").arguments,
              (std::vector<std::string>{"-n", "--", "/helper", "--started-by", "sudo", "--volume",
                                        "/vol", "--home", "/home/me"}));
}

TEST(HelperCommand, ForSudoHasNoCharacterInItsPromptThatATerminalObeys) {
    const auto command =
        helperCommand(AdministratorWay::sudoOnTerminal, desktop(), at("/helper"),
                      "Tool\x1b[2J\nforged \xC2\x9B\xC2\x85\xE2\x80\xA8\xE2\x80\xAE needs rights");
    EXPECT_EQ(command.arguments.at(2),
              "Tool\\x1b[2J\\nforged \\xc2\\x9b\\xc2\\x85\\xe2\\x80\\xa8\\xe2\\x80\\xae needs "
              "rights\n[sudo] password for %p: ");
}

}  // namespace
}  // namespace installer::test
