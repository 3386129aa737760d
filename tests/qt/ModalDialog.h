#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>

#include <gtest/gtest.h>

namespace installer::test {

/// Acts on the modal dialog that the code under test is going to run: calls `act` again and again
/// while it runs, until that says that it is done. A dialog on which `act` is never done is closed
/// after a while, and the test fails.
template <class Dialog>
class WhileModal {
  public:
    explicit WhileModal(std::function<bool(Dialog&)> act) : act_(std::move(act)) {
        elapsed_.start();
        QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
        timer_.start(1);
    }
    WhileModal(const WhileModal&) = delete;
    WhileModal& operator=(const WhileModal&) = delete;
    ~WhileModal() { EXPECT_TRUE(done_) << "the dialog did not come to the expected state"; }

  private:
    void look() {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || acting_ || done_) return;
        acting_ = true;
        done_ = act_(*dialog);
        acting_ = false;
        if (done_) {
            timer_.stop();
        } else if (elapsed_.hasExpired(30000)) {
            timer_.stop();
            dialog->close();
        }
    }

    std::function<bool(Dialog&)> act_;
    QTimer timer_;
    QElapsedTimer elapsed_;
    bool acting_ = false;
    bool done_ = false;
};

}  // namespace installer::test
