// What every panel that asks for a folder promises.

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <optional>
#include <string>

#include "qt/dialogs/QtFolderPanel.h"
#include "qt/values/QtText.h"
#include "tests/ports/Adapter.h"
#include "tests/qt/ModalDialog.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {

/// A user in front of a panel, and a disk with the folders "Plain", "Hidden" and "Made.plugin".
class FolderPanelScene {
  public:
    virtual ~FolderPanelScene() = default;
    [[nodiscard]] virtual std::string path(const std::string& name) const = 0;
    /// What the panel gives when the user types that path and confirms, and cancels where it does
    /// not take it; or cancels at once.
    [[nodiscard]] virtual std::optional<std::string> answer(
        const FolderRequest& request, const std::optional<std::string>& typed) = 0;
};

namespace {

class PanelOfTheToolkit : public FolderPanelScene {
  public:
    PanelOfTheToolkit() {
        for (const char* name : {"Plain", "Hidden", "Made.plugin"}) {
            EXPECT_TRUE(QDir(disk_.path()).mkpath(QString::fromUtf8(name)));
        }
    }

    std::string path(const std::string& name) const override {
        return fromQt(disk_.filePath(toQt(name)));
    }
    std::optional<std::string> answer(const FolderRequest& request,
                                      const std::optional<std::string>& typed) override {
        const WhileModal<QFileDialog> user([&](QFileDialog& dialog) {
            if (typed) {
                dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(toQt(*typed));
                auto* buttons = dialog.findChild<QDialogButtonBox*>();
                buttons->button(QDialogButtonBox::Open)->click();
            }
            if (dialog.isVisible()) dialog.reject();
            return true;
        });
        return QtFolderPanel().runModal(request);
    }

  private:
    QTemporaryDir disk_;
};

class PanelInMemory : public FolderPanelScene {
  public:
    std::string path(const std::string& name) const override { return "/Disk/" + name; }
    std::optional<std::string> answer(const FolderRequest& request,
                                      const std::optional<std::string>& typed) override {
        panel_.answer = typed;
        return panel_.runModal(request);
    }

  private:
    FakeFolderPanel panel_;
};

template <class Panel>
std::unique_ptr<FolderPanelScene> makeFolderPanelScene() {
    return std::make_unique<Panel>();
}

}  // namespace

class FolderPanelContract : public Contract<FolderPanelScene> {
  protected:
    [[nodiscard]] FolderRequest request() const {
        FolderRequest request;
        request.startFolder = scene_->path("Plain");
        request.shouldShow = [hidden = scene_->path("Hidden")](const std::string& path) {
            return path != hidden;
        };
        return request;
    }
    [[nodiscard]] std::optional<std::string> answer(const std::string& name) {
        FolderRequest asked = request();
        if (name == "Plain") asked.startFolder = scene_->path("Hidden");
        return scene_->answer(asked, scene_->path(name));
    }
};

TEST_P(FolderPanelContract, GivesTheFolderThatWasConfirmed) {
    EXPECT_EQ(answer("Plain"), scene_->path("Plain"));
}

TEST_P(FolderPanelContract, GivesNothingWhenTheUserCancels) {
    EXPECT_EQ(scene_->answer(request(), std::nullopt), std::nullopt);
}

TEST_P(FolderPanelContract, WhatTheRequestDoesNotShowCannotBeChosen) {
    EXPECT_EQ(answer("Hidden"), std::nullopt);
}

TEST_P(FolderPanelContract, APackageCannotBeChosen) {
    EXPECT_EQ(answer("Made.plugin"), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    FolderPanel, FolderPanelContract,
    testing::Values(Adapter<FolderPanelScene>{"Qt", makeFolderPanelScene<PanelOfTheToolkit>},
                    Adapter<FolderPanelScene>{"Fake", makeFolderPanelScene<PanelInMemory>}),
    AdapterName());

}  // namespace installer::test
