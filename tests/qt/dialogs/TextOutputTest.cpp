#include <QFile>
#include <QTemporaryDir>
#include <QTextBrowser>

#include <gtest/gtest.h>

#include "qt/dialogs/TextOutput.h"

namespace {

using namespace installer;

TEST(TextOutput, SavesTheCharactersOfTheText) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("terms.txt");
    QTextBrowser text;
    text.setPlainText(QStringLiteral("Terms\n1. Grüße"));
    ASSERT_TRUE(saveText(text, path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(), "Terms\n1. Grüße\n");
}

TEST(TextOutput, SaysWhereNothingCanBeSaved) {
    QTextBrowser text;
    text.setPlainText("Terms");
    EXPECT_FALSE(saveText(text, "/nowhere/terms.txt"));
}

}  // namespace
