#include "tests/privileged/trees/Disk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "privileged/trees/TreeRemoval.h"

namespace installer::test {

namespace {

constexpr uid_t nobody = 65534;

void expectDone(bool done, const char* what, const std::string& path) {
    EXPECT_TRUE(done) << what << " " << path << ": " << std::strerror(errno);
}

void writeAnswer(int pipe, const std::string& answer) {
    static_cast<void>(!write(pipe, answer.data(), answer.size()));
}

std::string readAnswer(int pipe) {
    std::string answer;
    std::array<char, 4096> buffer = {};
    for (;;) {
        const auto count = read(pipe, buffer.data(), buffer.size());
        if (count <= 0) return answer;
        answer.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

std::string runChild(const std::function<std::string()>& work, bool ordinary) {
    std::array<int, 2> pipes = {};
    if (pipe(pipes.data()) != 0) return "<no pipe>";
    // What is buffered would be written by both.
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        close(pipes[0]);
        const bool mustDrop = ordinary && geteuid() == 0;
        const bool ready =
            !mustDrop || (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0);
        writeAnswer(pipes[1], ready ? work() : "<kept its rights>");
        _exit(0);
    }
    close(pipes[1]);
    std::string answer = readAnswer(pipes[0]);
    close(pipes[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) answer += "<signal " + std::to_string(WTERMSIG(status)) + ">";
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0) answer += "<bad exit>";
    return answer;
}

}  // namespace

Disk::Disk() {
    // Ordinary users of a test work here too.
    chmod(folder_.path().c_str(), 0777);
}

// Takes what the standard library's way cannot: locked folders, and very deep ones.
Disk::~Disk() {
    const auto error = removeTree(folder_.path(), LinkPolicy::follow);
    EXPECT_FALSE(error) << folder_.path() << " is left: " << error.message();
}

std::string Disk::path(const std::string& name) const {
    return name.empty() ? folder_.path() : folder_.at(name);
}

void Disk::makeFolder(const std::string& name, mode_t mode) const {
    expectDone(mkdir(path(name).c_str(), 0700) == 0, "mkdir", path(name));
    setMode(name, mode);
}

void Disk::makeFile(const std::string& name, const std::string& contents, mode_t mode) const {
    const int file = open(path(name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    expectDone(file >= 0, "open", path(name));
    const auto written = write(file, contents.data(), contents.size());
    expectDone(written == static_cast<ssize_t>(contents.size()), "write", path(name));
    close(file);
    setMode(name, mode);
}

void Disk::makeLink(const std::string& target, const std::string& name) const {
    expectDone(symlink(target.c_str(), path(name).c_str()) == 0, "symlink", path(name));
}

void Disk::makeFifo(const std::string& name) const {
    expectDone(mkfifo(path(name).c_str(), 0644) == 0, "mkfifo", path(name));
}

void Disk::makeSocket(const std::string& name) const {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path(name).size(), sizeof address.sun_path);
    std::copy_n(path(name).data(), path(name).size(), address.sun_path);
    const int end = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    expectDone(bind(end, generic, sizeof address) == 0, "bind", path(name));
    close(end);
}

void Disk::setMode(const std::string& name, mode_t mode) const {
    expectDone(chmod(path(name).c_str(), mode) == 0, "chmod", path(name));
}

void Disk::setTimes(const std::string& name, timespec accessed, timespec modified) const {
    const std::array<timespec, 2> times = {accessed, modified};
    const int result = utimensat(AT_FDCWD, path(name).c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
    expectDone(result == 0, "utimensat", path(name));
}

void Disk::setAttribute(const std::string& name, const char* attribute,
                        const std::string& value) const {
    const int result = setxattr(path(name).c_str(), attribute, value.data(), value.size(), 0);
    expectDone(result == 0, "setxattr", path(name));
}

bool Disk::exists(const std::string& name) const {
    struct stat found = {};
    return lstat(path(name).c_str(), &found) == 0;
}

struct stat Disk::status(const std::string& name) const {
    struct stat found = {};
    expectDone(lstat(path(name).c_str(), &found) == 0, "lstat", path(name));
    return found;
}

mode_t Disk::mode(const std::string& name) const {
    return status(name).st_mode & 07777;
}

std::string Disk::contents(const std::string& name) const {
    const int file = open(path(name).c_str(), O_RDONLY | O_CLOEXEC);
    expectDone(file >= 0, "open", path(name));
    std::string text = readAnswer(file);
    close(file);
    return text;
}

std::string Disk::linkTarget(const std::string& name) const {
    std::array<char, 4096> buffer = {};
    const auto length = readlink(path(name).c_str(), buffer.data(), buffer.size());
    expectDone(length >= 0, "readlink", path(name));
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

std::string Disk::attribute(const std::string& name, const char* attribute) const {
    std::string buffer(65536, '\0');
    const auto length = lgetxattr(path(name).c_str(), attribute, buffer.data(), buffer.size());
    return buffer.substr(0, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
}

std::vector<std::string> Disk::names(const std::string& folder) const {
    std::vector<std::string> names;
    DIR* opened = opendir(path(folder).c_str());
    expectDone(opened != nullptr, "opendir", path(folder));
    if (opened == nullptr) return names;
    while (const dirent* entry = readdir(opened)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(opened);
    std::sort(names.begin(), names.end());
    return names;
}

std::string asOrdinaryUser(const std::function<std::string()>& work) {
    return runChild(work, true);
}

std::string inChild(const std::function<std::string()>& work) {
    return runChild(work, false);
}

}  // namespace installer::test
