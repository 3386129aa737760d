#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include "qt/dialogs/QtClipboard.h"

namespace {

using namespace installer;

TEST(QtClipboard, HoldsTheTextForOtherPrograms) {
    QtClipboard().setText("/Library/Grün.plugin\n");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("/Library/Grün.plugin\n"));
}

}  // namespace
