#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ports/PreferencesStore.h"

namespace installer {

/// A property list whose root is a dictionary, read from XML or binary form.
class PropertyList {
  public:
    /// An empty dictionary, to be written as XML.
    PropertyList();

    /// nullopt if the bytes are no property list, its root is no dictionary, or it is nested or
    /// repeats itself so much that reading it would exhaust the process.
    [[nodiscard]] static std::optional<PropertyList> parse(std::string_view bytes);

    /// The value under the key; nullopt if it is missing or of another type.
    [[nodiscard]] std::optional<PreferenceValue> value(const std::string& key) const;

    /// The bytes under the key; nullopt if it is missing or holds no bytes.
    [[nodiscard]] std::optional<std::string> data(const std::string& key) const;

    void set(const std::string& key, const PreferenceValue& value);
    void setData(const std::string& key, std::string_view bytes);
    void remove(const std::string& key);

    /// The whole list in the form it was read from; nullopt if there is no memory for it.
    [[nodiscard]] std::optional<std::string> serialized() const;

  private:
    enum class Form { xml, binary };
    struct NodeDeleter {
        void operator()(void* node) const;
    };
    using Node = std::unique_ptr<void, NodeDeleter>;

    PropertyList(Node root, Form form);

    Node root_;
    Form form_ = Form::xml;
};

}  // namespace installer
