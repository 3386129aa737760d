// What every system log promises.

#include <functional>
#include <string>

#include "linux/log/LinuxSystemLog.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// A system log whose text can be read.
class SystemLogScene {
  public:
    virtual ~SystemLogScene() = default;
    /// The text that the log has from `work`, each line with its end.
    [[nodiscard]] virtual std::string written(const std::function<void(SystemLog& log)>& work) = 0;
};

namespace {

class LogOnStandardError : public SystemLogScene {
  public:
    std::string written(const std::function<void(SystemLog& log)>& work) override {
        testing::internal::CaptureStderr();
        work(log_);
        return testing::internal::GetCapturedStderr();
    }

  private:
    ScratchFolder withoutDaemon_;
    LinuxSystemLog log_{"Installer", withoutDaemon_.at("log")};
};

class LogInMemory : public SystemLogScene {
  public:
    std::string written(const std::function<void(SystemLog& log)>& work) override {
        RecordingLog log;
        work(log);
        return log.text();
    }
};

template <class Log>
std::unique_ptr<SystemLogScene> makeSystemLogScene() {
    return std::make_unique<Log>();
}

}  // namespace

class SystemLogContract : public Contract<SystemLogScene> {
  protected:
    [[nodiscard]] std::string written(const std::string& line) {
        return scene_->written([&](SystemLog& log) { log.log(line); });
    }
};

TEST_P(SystemLogContract, EachCallIsOneLineInTheirOrder) {
    EXPECT_EQ(scene_->written([](SystemLog& log) {
        log.log("Found path file /a");
        log.log("");
        log.log("removing existing file...");
    }),
              "Found path file /a\n\nremoving existing file...\n");
}

TEST_P(SystemLogContract, OneLineFeedAtTheEndIsTheEndOfTheLine) {
    EXPECT_EQ(written("terminated Photoshop\n"), "terminated Photoshop\n");
    EXPECT_EQ(written("two\n\n"), "two\\n\n");
    EXPECT_EQ(written("\n"), "\n");
}

TEST_P(SystemLogContract, NoFileNameCanForgeALine) {
    EXPECT_EQ(written("removing a\nAll is well"), "removing a\\nAll is well\n");
    EXPECT_EQ(written("a\r\x1B[2J\tb"), "a\\r\\x1b[2J\\tb\n");
}

TEST_P(SystemLogContract, LettersOfEveryLanguageStayAsTheyAre) {
    EXPECT_EQ(written("Größe 日本 \\ 100%"), "Größe 日本 \\ 100%\n");
}

INSTANTIATE_TEST_SUITE_P(
    SystemLog, SystemLogContract,
    testing::Values(Adapter<SystemLogScene>{"Linux", makeSystemLogScene<LogOnStandardError>},
                    Adapter<SystemLogScene>{"Fake", makeSystemLogScene<LogInMemory>}),
    AdapterName());

}  // namespace installer::test
