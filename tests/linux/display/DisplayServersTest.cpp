#include <algorithm>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "ports/window/DisplayServers.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

/// A socket that takes clients, as a compositor's does, for as long as the object lives.
FileDescriptor listenAt(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(socket.get(), 1), 0);
    return socket;
}

class DisplayServersWaylandCompositor : public testing::Test {
  protected:
    DisplayServersWaylandCompositor() { ::setenv("XDG_RUNTIME_DIR", session.path().c_str(), 1); }

    ScratchFolder session;
};

TEST_F(DisplayServersWaylandCompositor, IsASocketInTheSessionsFolderOrAtAPath) {
    const FileDescriptor compositor = listenAt(session.at("wayland-5"));
    EXPECT_TRUE(reachesWaylandCompositor("wayland-5"));
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_FALSE(reachesWaylandCompositor("wayland-5"));
    EXPECT_TRUE(reachesWaylandCompositor(session.at("wayland-5")));
}

TEST_F(DisplayServersWaylandCompositor, IsNotReachedOnceItHasEnded) {
    listenAt(session.at("wayland-5")).reset();
    EXPECT_FALSE(reachesWaylandCompositor("wayland-5"));
}

TEST_F(DisplayServersWaylandCompositor, IsNotReachedWhenThereIsNone) {
    EXPECT_FALSE(reachesWaylandCompositor("wayland-5"));
    EXPECT_FALSE(reachesWaylandCompositor(std::string(200, 'x')));
}

TEST(DisplayServersXServer, IsNotReachedWhenItDoesNotExist) {
    ::setenv("DISPLAY", ":65000", 1);
    EXPECT_EQ(connectToXServer(), nullptr);
    ::setenv("DISPLAY", "nonsense", 1);
    EXPECT_EQ(connectToXServer(), nullptr);
}

}  // namespace
}  // namespace installer::test
