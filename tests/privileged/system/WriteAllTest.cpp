#include <array>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include "privileged/system/FileDescriptor.h"
#include "privileged/system/WriteAll.h"
#include "tests/privileged/system/SignalsThatInterrupt.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

/// Different bytes at neighbouring places, so that none can be lost or told twice unseen.
std::string countedText(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t place = 0; place < size; ++place) {
        text[place] = static_cast<char>(place % 251);
    }
    return text;
}

TEST(WriteAll, WritesOnWhereASignalInterruptedIt) {
    std::array<int, 2> ends = {};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    ASSERT_EQ(fcntl(reading.get(), F_SETFL, O_NONBLOCK), 0);
    const std::string text = countedText(1 << 20);
    std::string read(text.size(), '\0');
    std::size_t size = 0;
    const auto readWhatIsThere = [&] {
        ssize_t count = 0;
        while ((count = ::read(reading.get(), read.data() + size, read.size() - size)) > 0) {
            size += static_cast<std::size_t>(count);
        }
    };
    {
        // Only each second signal makes room: some calls write a part, and others nothing.
        const SignalsThatInterrupt signals([&](int number) {
            if (number % 2 == 0) readWhatIsThere();
        });
        EXPECT_FALSE(writeAll(writing.get(), text));
    }
    readWhatIsThere();
    EXPECT_EQ(size, text.size());
    EXPECT_TRUE(read == text);
}

TEST(WriteAll, SaysWhenOnlyTheBeginningCouldBeWritten) {
    const Disk disk;
    disk.makeFile("file");
    EXPECT_EQ(inChild([&] {
                  signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{4096, 4096};
                  if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return std::string("no limit");
                  const FileDescriptor file(open(disk.path("file").c_str(), O_WRONLY | O_CLOEXEC));
                  return writeAll(file.get(), countedText(5000)).message();
              }),
              "File too large");
    EXPECT_TRUE(disk.contents("file") == countedText(4096));
}

TEST(WriteAll, WritesNothingOfAnEmptyText) {
    EXPECT_FALSE(writeAll(-1, ""));
    EXPECT_EQ(writeAll(-1, "x"), std::errc::bad_file_descriptor);
}

}  // namespace
}  // namespace installer::test
