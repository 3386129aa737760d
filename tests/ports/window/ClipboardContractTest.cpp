// What every clipboard promises.

#include <QClipboard>
#include <QGuiApplication>

#include "qt/dialogs/QtClipboard.h"
#include "qt/values/QtText.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {

/// A clipboard whose text can be pasted.
class ClipboardScene {
  public:
    virtual ~ClipboardScene() = default;
    [[nodiscard]] virtual Clipboard& clipboard() = 0;
    [[nodiscard]] virtual std::string pasted() const = 0;
};

namespace {

class ClipboardOfTheToolkit : public ClipboardScene {
  public:
    Clipboard& clipboard() override { return clipboard_; }
    std::string pasted() const override { return fromQt(QGuiApplication::clipboard()->text()); }

  private:
    QtClipboard clipboard_;
};

class ClipboardInMemory : public ClipboardScene {
  public:
    Clipboard& clipboard() override { return clipboard_; }
    std::string pasted() const override { return clipboard_.text; }

  private:
    FakeClipboard clipboard_;
};

template <class Scene>
std::unique_ptr<ClipboardScene> makeClipboardScene() {
    return std::make_unique<Scene>();
}

}  // namespace

class ClipboardContract : public Contract<ClipboardScene> {};

TEST_P(ClipboardContract, HoldsTheLastTextAsItIs) {
    for (const std::string text : {"/Library/Grün.plugin\n", "two\n\nlines\t", "日本", ""}) {
        scene_->clipboard().setText(text);
        EXPECT_EQ(scene_->pasted(), text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Clipboard, ClipboardContract,
    testing::Values(Adapter<ClipboardScene>{"Qt", makeClipboardScene<ClipboardOfTheToolkit>},
                    Adapter<ClipboardScene>{"Fake", makeClipboardScene<ClipboardInMemory>}),
    AdapterName());

}  // namespace installer::test
