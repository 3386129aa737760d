// What every event loop promises.

#include "tests/ports/EventLoopContract.h"

namespace installer::test {

TEST_P(EventLoopContract, ATurnUntilNowHandlesWhatIsThereAndDoesNotWait) {
    addSource();
    scene_->loop().runUntilNow();
    EXPECT_EQ(handled_, 0);
    scene_->happen();
    scene_->loop().runUntilNow();
    EXPECT_EQ(handled_, 1);
    scene_->loop().runUntilNow();
    EXPECT_EQ(handled_, 1);
}

// A turn may be about something else, such as a toolkit's own timers.
TEST_P(EventLoopContract, ATurnHandlesWhatHasHappened) {
    addSource();
    scene_->happen();
    while (handled_ == 0) ASSERT_TRUE(scene_->loop().runOnce());
    EXPECT_EQ(handled_, 1);
}

TEST_P(EventLoopContract, ATurnWaitsUntilSomethingHappens) {
    addSource();
    scene_->happenLater();
    while (handled_ == 0) ASSERT_TRUE(scene_->loop().runOnce());
    EXPECT_EQ(handled_, 1);
}

TEST_P(EventLoopContract, AHandlerMayTurnTheLoopItself) {
    bool isOuter = true;
    scene_->addSource([&] {
        ++handled_;
        if (!std::exchange(isOuter, false)) return;
        scene_->happen();
        while (handled_ < 2) ASSERT_TRUE(scene_->loop().runOnce());
    });
    scene_->happen();
    while (handled_ == 0) ASSERT_TRUE(scene_->loop().runOnce());
    EXPECT_EQ(handled_, 2);
}

}  // namespace installer::test
