#include <QAbstractItemModel>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "qt/dialogs/QtFolderPanel.h"
#include "qt/values/QtText.h"
#include "tests/qt/ModalDialog.h"

namespace {

using namespace installer;
using installer::test::WhileModal;
using testing::UnorderedElementsAre;

class QtFolderPanelTest : public testing::Test {
  protected:
    QtFolderPanelTest() {
        for (const char* name : {"Alpha", "Beta/Contents", "Gamma.plugin", "Delta", "Delta/Inner"})
            QDir(disk.path()).mkpath(QString::fromUtf8(name));
        QFile file(disk.filePath(QStringLiteral("readme.txt")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        request.title = "Title";
        request.message = "Message";
        request.prompt = "Choose it";
        request.startFolder = path("");
        request.shouldShow = [](const std::string& item) { return isPlainFolder(item); };
    }

    [[nodiscard]] std::string path(const char* below) const {
        return fromQt(*below == '\0' ? disk.path() : disk.filePath(QString::fromUtf8(below)));
    }

    static bool isPlainFolder(const std::string& item) {
        const QDir folder(toQt(item));
        return folder.exists() && !folder.exists(QStringLiteral("Contents"));
    }

    std::optional<std::string> run(const std::function<bool(QFileDialog&)>& act) {
        const WhileModal<QFileDialog> user(act);
        QtFolderPanel panel;
        return panel.runModal(request);
    }

    /// What the user does once the items are listed.
    std::optional<std::string> runWithItems(const std::set<std::string>& items,
                                            const std::function<void(QFileDialog&)>& act) {
        return run([&](QFileDialog& dialog) {
            if (shownItems(dialog) != items) return false;
            act(dialog);
            return true;
        });
    }

    static QListView* list(const QFileDialog& dialog) {
        return dialog.findChild<QListView*>(QStringLiteral("listView"));
    }
    static QModelIndex item(const QFileDialog& dialog, const char* name) {
        const QListView* view = list(dialog);
        for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row) {
            QModelIndex index = view->model()->index(row, 0, view->rootIndex());
            if (index.data().toString() == QString::fromUtf8(name)) return index;
        }
        return {};
    }
    static std::set<std::string> shownItems(const QFileDialog& dialog) {
        std::set<std::string> names;
        const QListView* view = list(dialog);
        for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row)
            names.insert(fromQt(view->model()->index(row, 0, view->rootIndex()).data().toString()));
        return names;
    }
    static void select(const QFileDialog& dialog, const char* name) {
        list(dialog)->setCurrentIndex(item(dialog, name));
    }
    static void type(const QFileDialog& dialog, const std::string& text) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(toQt(text));
    }
    static QPushButton* confirmation(const QFileDialog& dialog) {
        for (auto* button : dialog.findChild<QDialogButtonBox*>()->findChildren<QPushButton*>())
            if (button->text() == QStringLiteral("Choose it")) return button;
        return nullptr;
    }

    const std::set<std::string> offered{"Alpha", "Delta", "Gamma.plugin"};
    QTemporaryDir disk;
    FolderRequest request;
};

TEST_F(QtFolderPanelTest, ShowsWhatTheRequestWantsShown) {
    runWithItems(offered, [](QFileDialog& dialog) { dialog.reject(); });
    request.shouldShow = [](const std::string& item) { return item.ends_with(".txt"); };
    runWithItems({"readme.txt"}, [](QFileDialog& dialog) { dialog.reject(); });
}

TEST_F(QtFolderPanelTest, GivesTheChosenFolder) {
    EXPECT_EQ(runWithItems(offered,
                           [](QFileDialog& dialog) {
                               select(dialog, "Delta");
                               confirmation(dialog)->click();
                           }),
              path("Delta"));
}

TEST_F(QtFolderPanelTest, GivesAFolderFurtherDown) {
    const WhileModal<QFileDialog> user([entered = false, this](QFileDialog& dialog) mutable {
        if (!entered) {
            if (shownItems(dialog) != offered) return false;
            Q_EMIT list(dialog)->activated(item(dialog, "Delta"));
            entered = true;
            return false;
        }
        if (shownItems(dialog) != std::set<std::string>{"Inner"}) return false;
        select(dialog, "Inner");
        confirmation(dialog)->click();
        return true;
    });
    EXPECT_EQ(QtFolderPanel().runModal(request), path("Delta/Inner"));
}

TEST_F(QtFolderPanelTest, GivesTheFolderItStartsInWhenNoItemIsChosen) {
    EXPECT_EQ(runWithItems(offered, [](QFileDialog& dialog) { confirmation(dialog)->click(); }),
              path(""));
}

TEST_F(QtFolderPanelTest, LetsTheUserChooseOneFolderOnly) {
    EXPECT_EQ(runWithItems(offered,
                           [](QFileDialog& dialog) {
                               EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
                               EXPECT_EQ(list(dialog)->selectionMode(),
                                         QAbstractItemView::SingleSelection);
                               select(dialog, "Alpha");
                               select(dialog, "Delta");
                               EXPECT_EQ(dialog.selectedFiles().size(), 1);
                               confirmation(dialog)->click();
                           }),
              path("Delta"));
}

TEST_F(QtFolderPanelTest, GivesNothingWhenItIsCancelled) {
    EXPECT_EQ(runWithItems(offered,
                           [](QFileDialog& dialog) {
                               select(dialog, "Delta");
                               dialog.reject();
                           }),
              std::nullopt);
}

TEST_F(QtFolderPanelTest, ALinkToAFolderStaysThePathThatWasPicked) {
    ASSERT_TRUE(
        QFile::link(disk.filePath(QStringLiteral("Delta")), disk.filePath(QStringLiteral("Link"))));
    std::set<std::string> asked;
    request.shouldShow = [&](const std::string& item) {
        asked.insert(item);
        return isPlainFolder(item);
    };
    EXPECT_EQ(runWithItems({"Alpha", "Delta", "Gamma.plugin", "Link"},
                           [](QFileDialog& dialog) {
                               select(dialog, "Link");
                               confirmation(dialog)->click();
                           }),
              path("Link"));
    EXPECT_TRUE(asked.contains(path("Link")));
}

TEST_F(QtFolderPanelTest, APackageIsAnItemThatCanBeNeitherChosenNorEntered) {
    runWithItems(offered, [](QFileDialog& dialog) {
        EXPECT_FALSE(item(dialog, "Gamma.plugin").flags() & Qt::ItemIsEnabled);
        EXPECT_FALSE(item(dialog, "Gamma.plugin").flags() & Qt::ItemIsSelectable);
        EXPECT_TRUE(item(dialog, "Delta").flags() & Qt::ItemIsEnabled);
        dialog.reject();
    });
}

TEST_F(QtFolderPanelTest, WhatItDoesNotOfferCannotBeTypedEither) {
    for (const char* name : {"Beta", "Gamma.plugin", "readme.txt"}) {
        EXPECT_EQ(runWithItems(offered,
                               [&](QFileDialog& dialog) {
                                   type(dialog, path(name));
                                   confirmation(dialog)->click();
                                   EXPECT_TRUE(dialog.isVisible()) << name;
                                   dialog.reject();
                               }),
                  std::nullopt);
    }
    EXPECT_EQ(runWithItems(offered,
                           [&](QFileDialog& dialog) {
                               type(dialog, path("Alpha"));
                               confirmation(dialog)->click();
                           }),
              path("Alpha"));
}

TEST_F(QtFolderPanelTest, StartsInAFolderThatItWouldNotOffer) {
    QDir(disk.path()).mkpath(QStringLiteral("Beta/Contents/Plug-ins"));
    request.startFolder = path("Beta/Contents");
    EXPECT_EQ(runWithItems({"Plug-ins"},
                           [](QFileDialog& dialog) {
                               select(dialog, "Plug-ins");
                               confirmation(dialog)->click();
                           }),
              path("Beta/Contents/Plug-ins"));
}

TEST_F(QtFolderPanelTest, StartsInTheNearestFolderThatExists) {
    request.startFolder = path("Delta/gone/for/good");
    EXPECT_EQ(runWithItems({"Inner"}, [](QFileDialog& dialog) { confirmation(dialog)->click(); }),
              path("Delta"));
}

TEST_F(QtFolderPanelTest, StartsAtHomeWithoutAStartFolder) {
    request.startFolder = "";
    run([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory(), QDir::home());
        dialog.reject();
        return true;
    });
}

TEST_F(QtFolderPanelTest, SaysWhatItIsFor) {
    request.message = "Where <b>is</b> it?";
    runWithItems(offered, [](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Title"));
        ASSERT_NE(confirmation(dialog), nullptr);
        const auto labels = dialog.findChildren<QLabel*>();
        const auto message = std::find_if(labels.begin(), labels.end(), [](const QLabel* label) {
            return label->text() == QStringLiteral("Where <b>is</b> it?");
        });
        ASSERT_NE(message, labels.end());
        EXPECT_TRUE((*message)->isVisible());
        EXPECT_EQ((*message)->textFormat(), Qt::PlainText);
        EXPECT_LT((*message)->y(), list(dialog)->mapTo(&dialog, QPoint(0, 0)).y());
        dialog.reject();
    });
}

TEST_F(QtFolderPanelTest, LetsTheUserMakeANewFolder) {
    runWithItems(offered, [](QFileDialog& dialog) {
        const auto* button = dialog.findChild<QWidget*>(QStringLiteral("newFolderButton"));
        ASSERT_NE(button, nullptr);
        EXPECT_TRUE(button->isVisible() && button->isEnabled());
        dialog.reject();
    });
}

TEST_F(QtFolderPanelTest, ShowsAFolderThatIsMadeWhileItIsOpen) {
    const WhileModal<QFileDialog> user([made = false, this](QFileDialog& dialog) mutable {
        if (!made) {
            if (shownItems(dialog) != offered) return false;
            made = QDir(disk.path()).mkdir(QStringLiteral("New"));
            return false;
        }
        if (!shownItems(dialog).contains("New")) return false;
        select(dialog, "New");
        confirmation(dialog)->click();
        return true;
    });
    EXPECT_EQ(QtFolderPanel().runModal(request), path("New"));
}

}  // namespace
