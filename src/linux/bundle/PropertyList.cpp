#include "linux/bundle/PropertyList.h"

#include <limits>
#include <utility>

#include <plist/plist.h>

#include "linux/bundle/PropertyListShape.h"

namespace installer {

PropertyList::PropertyList() : PropertyList(Node(plist_new_dict()), Form::xml) {}

PropertyList::PropertyList(Node root, Form form) : root_(std::move(root)), form_(form) {}

void PropertyList::NodeDeleter::operator()(void* node) const {
    plist_free(node);
}

std::optional<PropertyList> PropertyList::parse(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max() || !hasHarmlessShape(bytes))
        return std::nullopt;
    const char* start = bytes.data();
    const auto length = static_cast<std::uint32_t>(bytes.size());
    plist_t node = nullptr;
    plist_from_memory(start, length, &node);
    Node root(node);
    if (!root || plist_get_node_type(node) != PLIST_DICT) return std::nullopt;
    const bool isBinary = plist_is_binary(start, length) != 0;
    return PropertyList(std::move(root), isBinary ? Form::binary : Form::xml);
}

std::optional<PreferenceValue> PropertyList::value(const std::string& key) const {
    plist_t node = plist_dict_get_item(root_.get(), key.c_str());
    if (node == nullptr) return std::nullopt;
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return value != 0;
        }
        case PLIST_UINT: {
            std::uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return static_cast<std::int64_t>(value);
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return value;
        }
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* text = plist_get_string_ptr(node, &length);
            return text == nullptr ? std::string() : std::string(text, length);
        }
        default:
            return std::nullopt;
    }
}

std::optional<std::string> PropertyList::data(const std::string& key) const {
    plist_t node = plist_dict_get_item(root_.get(), key.c_str());
    if (node == nullptr || plist_get_node_type(node) != PLIST_DATA) return std::nullopt;
    std::uint64_t length = 0;
    const char* bytes = plist_get_data_ptr(node, &length);
    return bytes == nullptr ? std::string() : std::string(bytes, length);
}

void PropertyList::set(const std::string& key, const PreferenceValue& value) {
    struct Maker {
        plist_t operator()(bool flag) const { return plist_new_bool(flag ? 1 : 0); }
        plist_t operator()(std::int64_t number) const {
            return plist_new_uint(static_cast<std::uint64_t>(number));
        }
        plist_t operator()(double number) const { return plist_new_real(number); }
        plist_t operator()(const std::string& text) const { return plist_new_string(text.c_str()); }
    };
    plist_dict_set_item(root_.get(), key.c_str(), std::visit(Maker(), value));
}

void PropertyList::setData(const std::string& key, std::string_view bytes) {
    plist_dict_set_item(root_.get(), key.c_str(), plist_new_data(bytes.data(), bytes.size()));
}

void PropertyList::remove(const std::string& key) {
    plist_dict_remove_item(root_.get(), key.c_str());
}

std::optional<std::string> PropertyList::serialized() const {
    // The writers do nothing, and say nothing, unless they are given a null pointer to fill.
    char* bytes = nullptr;
    std::uint32_t length = 0;
    if (form_ == Form::binary)
        plist_to_bin(root_.get(), &bytes, &length);
    else
        plist_to_xml(root_.get(), &bytes, &length);
    if (bytes == nullptr) return std::nullopt;
    std::string text(bytes, length);
    if (form_ == Form::binary)
        plist_to_bin_free(bytes);
    else
        plist_to_xml_free(bytes);
    return text;
}

}  // namespace installer
