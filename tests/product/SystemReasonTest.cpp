#include <cerrno>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "product/SystemReason.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

class SystemReasonTest : public testing::Test {
  protected:
    SystemReasonTest() {
        fake.bundle.tables["Localizable"] = {{"reason_disk_full", "voll"},
                                             {"reason_read_only", "schreibgeschützt"}};
    }

    [[nodiscard]] std::string reason(int error) const {
        return systemReason(fake.bundle, std::error_code(error, std::system_category()));
    }

    FakePlatform fake;
};

TEST_F(SystemReasonTest, AnErrorThatPeopleMeetIsInTheirLanguage) {
    EXPECT_EQ(reason(ENOSPC), "voll");
    EXPECT_EQ(reason(EROFS), "schreibgeschützt");
    EXPECT_EQ(systemReason(fake.bundle, std::make_error_code(std::errc::no_space_on_device)),
              "voll");
}

TEST_F(SystemReasonTest, AnyOtherErrorHasTheSystemsWords) {
    EXPECT_EQ(reason(ENOTTY), std::system_category().message(ENOTTY));
}

TEST_F(SystemReasonTest, ATableWithoutTheTextLeavesTheSystemsWords) {
    EXPECT_EQ(reason(EACCES), std::system_category().message(EACCES));
}

}  // namespace
}  // namespace installer::test
