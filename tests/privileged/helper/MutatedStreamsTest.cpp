// Streams of messages with mistakes in them, the same ones in every run. They are given to the
// helper's session in this process, and some of them to the real helper. A reader of its own says
// what must become of each: every whole request before the first mistake is answered, what cannot
// be a request is refused, and whatever nobody asked for stays as it is.

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/helper/HelperSession.h"
#include "tests/privileged/helper/HelperProcess.h"
#include "tests/privileged/wall/ReadOnlyMachine.h"

namespace installer::test {
namespace {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;

const std::string registration =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";

const std::vector<Texts>& goodRequests() {
    static const std::vector<Texts> requests = {
        {"/bin/mkdir", "-m775", "-p", "/media/folder/inner"},
        {"/usr/sbin/chown", "-R", "root:admin", "/media/folder"},
        {"/bin/rm", "-fR", "/media/copy"},
        {"/bin/cp", "-R", "/media/folder", "/media/copy"},
        {"/bin/chmod", "-R", "0775", "/media/folder"},
        {"/bin/chmod", "-R", "0664", "/media/file"},
        {"/usr/sbin/chmod", "-R", "0644", "/media/file"},
        {"/usr/bin/touch", "/media/file"},
        {"/usr/bin/xattr", "-dr", "com.apple.quarantine", "/media/folder"},
        {registration, "-applications"},
    };
    return requests;
}

class StreamMaker {
  public:
    explicit StreamMaker(unsigned seed) : random_(seed) {}

    std::string stream() {
        std::string bytes;
        for (std::size_t messages = 1 + below(4); messages > 0; --messages) bytes += message();
        for (std::size_t mistakes = below(5); mistakes > 0; --mistakes) mistake(bytes);
        return bytes;
    }

  private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string message() {
        switch (below(12)) {
            case 0:
                return encodedHello();
            case 1:
                return encodedProgress(random_());
            case 2:
                return encodedOutput(std::string(below(300), 'x'));
            default:
                return request();
        }
    }

    std::string request() {
        Texts texts = goodRequests()[below(goodRequests().size())];
        if (below(3) == 0) changeText(texts[below(texts.size())]);
        if (below(8) == 0) texts.insert(texts.begin() + 1, texts[below(texts.size())]);
        if (below(8) == 0) texts.pop_back();
        if (texts.empty()) return {};
        return encodedRequest({texts.front(), {texts.begin() + 1, texts.end()}}).value_or("");
    }

    void changeText(std::string& text) {
        static const Texts additions = {
            "/..", "/../../mnt/canary",   "//", "/.", "/", "\n", "\xff", std::string(1, '\0'), "-",
            "--",  std::string(5000, 'a')};
        const std::string& addition = additions[below(additions.size())];
        switch (below(4)) {
            case 0:
                text += addition;
                break;
            case 1:
                text = addition + text;
                break;
            case 2:
                text.insert(below(text.size() + 1), addition);
                break;
            default:
                text.resize(below(text.size() + 1));
                break;
        }
    }

    void mistake(std::string& bytes) {
        if (bytes.empty()) return;
        const std::size_t at = below(bytes.size());
        switch (below(6)) {
            case 0:
                bytes[at] = static_cast<char>(random_());
                break;
            case 1:
                bytes.insert(at, 1 + below(6), static_cast<char>(random_()));
                break;
            case 2:
                bytes.erase(at, 1 + below(6));
                break;
            case 3:
                bytes.resize(at);
                break;
            case 4:
                overwriteNumber(bytes, at);
                break;
            default:
                bytes.insert(at, bytes.substr(below(bytes.size()), below(60)));
                break;
        }
    }

    void overwriteNumber(std::string& bytes, std::size_t at) {
        static constexpr std::array<std::uint32_t, 9> numbers = {
            0, 1, 2, 16, 17, 65536, 65537, 0x7fffffffU, 0xffffffffU};
        const std::uint32_t number = numbers[below(numbers.size())];
        if (at + sizeof number <= bytes.size()) {
            std::memcpy(bytes.data() + at, &number, sizeof number);
        }
    }

    std::minstd_rand random_;
};

/// What a stream says, read in the plainest way.
struct Reading {
    std::vector<Texts> requests;  ///< before the first mistake
    bool endsWell = true;
};

std::optional<std::uint32_t> takeNumber(std::string_view& bytes) {
    std::uint32_t number = 0;
    if (bytes.size() < sizeof number) return std::nullopt;
    std::memcpy(&number, bytes.data(), sizeof number);
    bytes.remove_prefix(sizeof number);
    return number;
}

std::optional<Texts> textsOf(std::string_view body) {
    const auto count = takeNumber(body);
    if (!count || *count < 1 || *count > 16) return std::nullopt;
    Texts texts;
    for (std::uint32_t index = 0; index < *count; ++index) {
        const auto length = takeNumber(body);
        if (!length || *length > body.size()) return std::nullopt;
        texts.emplace_back(body.substr(0, *length));
        body.remove_prefix(*length);
    }
    return body.empty() ? std::optional(texts) : std::nullopt;
}

Reading readingOf(std::string_view bytes) {
    Reading reading;
    while (!bytes.empty()) {
        const auto type = takeNumber(bytes);
        const auto length = takeNumber(bytes);
        const bool whole = type == 2U && length && *length <= 65536 && *length <= bytes.size();
        const auto texts = whole ? textsOf(bytes.substr(0, *length)) : std::nullopt;
        if (!texts) {
            reading.endsWell = false;
            break;
        }
        reading.requests.push_back(*texts);
        bytes.remove_prefix(*length);
    }
    return reading;
}

bool isBadPath(const std::string& path) {
    const std::string closed = path + "/";
    const auto holds = [&closed](std::string_view part) {
        return closed.find(part) != std::string::npos;
    };
    return !path.starts_with("/") || path.size() > 4095 || holds("//") || holds("/./") ||
           holds("/../") || path.find('\0') != std::string::npos;
}

/// Not everything that is to be refused, but nothing that is not.
bool mustBeRefused(const Texts& request) {
    const auto good = std::ranges::find_if(goodRequests(), [&](const Texts& texts) {
        return texts.front() == request.front() && texts.size() == request.size();
    });
    return good == goodRequests().end() || isBadPath(request.back()) ||
           request.front() == registration;
}

void makeCanaries() {
    fs::create_directories(std::string(canaryFolder) + "/canary/inner");
    std::ofstream(std::string(canaryFolder) + "/canary/inner/file") << "alive";
    ::chmod((std::string(canaryFolder) + "/canary/inner/file").c_str(), 04600);
}

/// Whatever a request could have changed there.
std::string canaries() {
    std::string seen;
    for (const auto& entry : fs::recursive_directory_iterator(canaryFolder)) {
        struct stat status{};
        if (::lstat(entry.path().c_str(), &status) != 0) return "gone";
        seen += entry.path().string() + " " + std::to_string(status.st_ino) + " " +
                std::to_string(status.st_mode) + " " + std::to_string(status.st_ctim.tv_sec) + "." +
                std::to_string(status.st_ctim.tv_nsec) + "\n";
    }
    return seen;
}

std::vector<std::uint32_t> answersIn(std::string_view bytes) {
    MessageDecoder decoder;
    decoder.append(bytes);
    std::vector<std::uint32_t> answers;
    Message message;
    while (decoder.next(message) == MessageDecoder::State::message) {
        if (const auto status = exitStatus(message)) answers.push_back(*status);
    }
    return answers;
}

/// Empty when all is as the stream's reading says.
std::string fault(const std::string& stream, const std::vector<std::uint32_t>& answers,
                  int status) {
    const Reading reading = readingOf(stream);
    if (answers.size() != reading.requests.size()) {
        return std::to_string(answers.size()) + " answers to " +
               std::to_string(reading.requests.size()) + " requests";
    }
    if (status != (reading.endsWell ? 0 : 1)) return "status " + std::to_string(status);
    for (std::size_t index = 0; index < answers.size(); ++index) {
        constexpr std::uint32_t refused = 126;
        if (mustBeRefused(reading.requests[index]) && answers[index] != refused) {
            return "not refused: " + reading.requests[index].front();
        }
    }
    return "";
}

std::string contentsOfMemory(int file) {
    const off_t size = ::lseek(file, 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const ssize_t count = ::pread(file, bytes.data(), bytes.size(), 0);
    return count == size ? bytes : "";
}

/// One stream through a session in this process.
std::string giveToSession(const std::string& stream) {
    const FileDescriptor input(::memfd_create("input", MFD_CLOEXEC));
    const FileDescriptor output(::memfd_create("output", MFD_CLOEXEC));
    if (::pwrite(input.get(), stream.data(), stream.size(), 0) < 0) return "no input";
    const int status =
        HelperSession(input.get(), output.get(),
                      AdministratorTools(InvokingUser(0), ProtectedFolders(), everyFolder()))
            .run();
    return fault(stream, answersIn(contentsOfMemory(output.get())), status);
}

std::string giveToProcess(const std::string& stream) {
    HelperProcess helper;
    if (!helper.saysHello()) return "no helper";
    // One that has found a mistake may be gone before the last byte.
    static_cast<void>(helper.sendBytes(stream));
    ::shutdown(helper.connection(), SHUT_WR);
    std::vector<std::uint32_t> answers;
    while (const std::optional<Message> message = helper.stream().receive()) {
        if (const auto status = exitStatus(*message)) answers.push_back(*status);
    }
    return fault(stream, answers, helper.exitStatus());
}

std::string giveStreams(unsigned count, std::string (*give)(const std::string&)) {
    makeCanaries();
    const std::string before = canaries();
    for (unsigned seed = 1; seed <= count; ++seed) {
        const std::string stream = StreamMaker(seed).stream();
        std::string found = give(stream);
        if (found.empty() && canaries() != before) found = "the canaries were disturbed";
        if (!found.empty()) return "stream " + std::to_string(seed) + ": " + found;
    }
    return "";
}

class MutatedStreams : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: the helper's tests must run as root";
    }
};

TEST_F(MutatedStreams, AreAnsweredToTheirFirstMistakeByTheSession) {
    const std::string found = onReadOnlyMachine([] {
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        return giveStreams(6000, giveToSession);
    });
    EXPECT_EQ(found, "");
}

TEST_F(MutatedStreams, AreAnsweredToTheirFirstMistakeByTheProcess) {
    EXPECT_EQ(onReadOnlyMachine([] { return giveStreams(150, giveToProcess); }), "");
}

/// Every length at which a good request can be cut.
TEST_F(MutatedStreams, DoNothingWhenTheyAreCutAtAnyByte) {
    const std::string found = onReadOnlyMachine([]() -> std::string {
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        makeCanaries();
        const std::string before = canaries();
        const std::string request =
            encodedRequest({"/bin/rm", {"-fR", std::string(canaryFolder) + "/canary"}}).value();
        for (std::size_t length = 0; length < request.size(); ++length) {
            const std::string fault = giveToSession(request.substr(0, length));
            if (!fault.empty()) return std::to_string(length) + ": " + fault;
        }
        if (canaries() != before) return "the canaries were disturbed";
        const std::string fault = giveToSession(request);
        return canaries().empty() ? fault : "the whole request was not carried out";
    });
    EXPECT_EQ(found, "");
}

}  // namespace
}  // namespace installer::test
