#pragma once

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "qt/values/QtText.h"
#include "qt/window/QtInterfaceLoader.h"
#include "tests/qt/RecordingOwner.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

using Properties = std::vector<std::pair<std::string, std::string>>;

/// A dynamic property of a control.
inline std::string dynamicProperty(const std::string& name, const std::string& value) {
    const bool isFlag = value == "true";
    const std::string type = isFlag ? "bool" : "string";
    return "<property name=\"" + name + "\" stdset=\"0\"><" + type + ">" + value + "</" + type +
           "></property>";
}

inline std::string control(const std::string& type, const std::string& name,
                           const Properties& properties = {}, const std::string& inside = {}) {
    std::string text = "<widget class=\"" + type + "\" name=\"" + name + "\">";
    for (const auto& [property, value] : properties) text += dynamicProperty(property, value);
    return text + inside + "</widget>";
}

/// Loads descriptions that the test writes, and finds the controls made from them.
class InterfaceTest : public testing::Test {
  protected:
    FakeBundle bundle;
    RecordingLog log;
    RecordingOwner owner;
    std::vector<std::string> links;
    QtInterfaceLoader loader{bundle, log,
                             [this](const std::string& address) { links.push_back(address); }};

    /// The description "Test" with the bytes as its file.
    std::unique_ptr<Interface> loadFile(const std::string& bytes) {
        const QString path = folder_.filePath("Test.ui");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        file.close();
        bundle.resources["Test.ui"] = fromQt(path);
        return loader.load("Test", owner);
    }

    std::unique_ptr<Interface> load(const std::string& root) {
        return loadFile("<ui version=\"4.0\"><class>Test</class>" + root + "</ui>");
    }

    /// One control in a window of its own.
    void show(const std::string& type, const Properties& properties,
              const std::string& inside = {}) {
        interface_ = load(control(
            "QMainWindow", "window", {},
            control("QWidget", "contents", {}, control(type, "control", properties, inside))));
        ASSERT_NE(interface_, nullptr);
        named<QWidget>("window").show();
    }

    void hide() { interface_.reset(); }

    template <class Type>
    static Type& named(const char* name) {
        for (QWidget* widget : QApplication::allWidgets()) {
            if (widget->objectName() != QLatin1String(name)) continue;
            if (auto* found = qobject_cast<Type*>(widget)) return *found;
        }
        throw std::runtime_error(std::string("no widget of that type is named ") + name);
    }

    template <class Type>
    static Type& shown() {
        return named<Type>("control");
    }

  private:
    QTemporaryDir folder_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace installer::test
