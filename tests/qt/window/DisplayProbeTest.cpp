#include <map>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "qt/window/DisplayProbe.h"

namespace {

using namespace installer;
using testing::HasSubstr;

class DisplayProbeTest : public testing::Test {
  protected:
    [[nodiscard]] DisplayProbe probe() const {
        return probeDisplay({.variable =
                                 [this](const std::string& name) {
                                     const auto found = environment.find(name);
                                     return found == environment.end() ? "" : found->second;
                                 },
                             .connectToXServer = [this] { return xServer; },
                             .reachesWaylandCompositor =
                                 [this](const std::string& name) { return name == compositor; },
                             .hasWaylandPlugin = waylandPlugin});
    }

    std::map<std::string, std::string> environment;
    std::shared_ptr<void> xServer;
    std::string compositor = "none";
    bool waylandPlugin = true;
};

TEST_F(DisplayProbeTest, WithoutADisplayThereIsNoWindow) {
    xServer = std::make_shared<int>();
    EXPECT_FALSE(probe().usable);
    EXPECT_THAT(probe().reason, HasSubstr("neither DISPLAY nor WAYLAND_DISPLAY"));
}

TEST_F(DisplayProbeTest, AnXServerThatAnswersWillDo) {
    environment["DISPLAY"] = ":7";
    xServer = std::make_shared<int>();
    EXPECT_TRUE(probe().usable);
    EXPECT_EQ(probe().platform, "");
}

TEST_F(DisplayProbeTest, TheConnectionToTheXServerIsHeldForTheToolkit) {
    environment["DISPLAY"] = ":7";
    xServer = std::make_shared<int>();
    EXPECT_EQ(probe().connection, xServer);
    environment["QT_QPA_PLATFORM"] = "xcb";
    EXPECT_EQ(probe().connection, xServer);
}

TEST_F(DisplayProbeTest, AnXServerThatRefusesIsNamed) {
    environment["DISPLAY"] = ":7";
    EXPECT_FALSE(probe().usable);
    EXPECT_THAT(probe().reason, HasSubstr(":7"));
}

TEST_F(DisplayProbeTest, ACompositorAloneIsAskedForByName) {
    environment["WAYLAND_DISPLAY"] = "wayland-0";
    compositor = "wayland-0";
    EXPECT_TRUE(probe().usable);
    EXPECT_EQ(probe().platform, "wayland");
    environment["DISPLAY"] = ":7";
    EXPECT_TRUE(probe().usable);
    EXPECT_EQ(probe().platform, "wayland");
}

TEST_F(DisplayProbeTest, ACompositorNeedsThePlugin) {
    environment["WAYLAND_DISPLAY"] = "wayland-0";
    compositor = "wayland-0";
    waylandPlugin = false;
    EXPECT_FALSE(probe().usable);
    EXPECT_THAT(probe().reason, HasSubstr("plug-in for Wayland is not installed"));
}

TEST_F(DisplayProbeTest, EveryServerThatFailedIsInTheReason) {
    environment = {{"DISPLAY", ":7"}, {"WAYLAND_DISPLAY", "wayland-9"}};
    EXPECT_FALSE(probe().usable);
    EXPECT_THAT(probe().reason, HasSubstr(":7"));
    EXPECT_THAT(probe().reason, HasSubstr("wayland-9"));
}

TEST_F(DisplayProbeTest, APlatformWithoutAServerIsTakenAtItsWord) {
    for (const char* name : {"offscreen", "minimal", "vnc:port=5901", "xcb;offscreen"}) {
        environment["QT_QPA_PLATFORM"] = name;
        EXPECT_TRUE(probe().usable) << name;
        EXPECT_EQ(probe().platform, "") << name;
    }
}

TEST_F(DisplayProbeTest, ANamedPlatformNeedsItsOwnServer) {
    environment = {{"DISPLAY", ":7"}, {"WAYLAND_DISPLAY", "wayland-0"}};
    compositor = "wayland-0";
    environment["QT_QPA_PLATFORM"] = "xcb";
    EXPECT_FALSE(probe().usable);
    environment["QT_QPA_PLATFORM"] = "wayland";
    EXPECT_TRUE(probe().usable);
    environment["QT_QPA_PLATFORM"] = "xcb;wayland-egl";
    EXPECT_TRUE(probe().usable);
}

TEST_F(DisplayProbeTest, AnUnknownPlatformIsRefused) {
    environment = {{"DISPLAY", ":7"}, {"QT_QPA_PLATFORM", "crystal-ball"}};
    xServer = std::make_shared<int>();
    EXPECT_FALSE(probe().usable);
    EXPECT_THAT(probe().reason, HasSubstr("crystal-ball"));
}

}  // namespace
