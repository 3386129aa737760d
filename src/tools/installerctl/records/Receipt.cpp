#include "tools/installerctl/records/Receipt.h"

#include <algorithm>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "foundation/text/Text.h"

namespace installer {

namespace {

using Json = nlohmann::ordered_json;

constexpr int receiptSchema = 1;
constexpr std::string_view hexMark = "hex:";
constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::size_t hashLength = 64;

/// What is wrong with a receipt; never leaves this file.
class Unreadable : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Names of files may be any bytes, and JSON is text.
std::string encoded(const std::string& text) {
    if (isUtf8(text) && !text.starts_with(hexMark)) return text;
    std::string hex(hexMark);
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        hex += hexDigits[byte >> 4U];
        hex += hexDigits[byte & 15U];
    }
    return hex;
}

std::string decoded(const std::string& text) {
    if (!text.starts_with(hexMark)) return text;
    std::string bytes;
    const std::string_view hex = std::string_view(text).substr(hexMark.size());
    if (hex.size() % 2 != 0) throw Unreadable("a text has half a byte");
    for (std::size_t place = 0; place < hex.size(); place += 2) {
        const std::size_t high = hexDigits.find(hex[place]);
        const std::size_t low = hexDigits.find(hex[place + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos) {
            throw Unreadable("a text has no hexadecimal digits");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

const Json& field(const Json& object, const char* name) {
    if (!object.is_object()) throw Unreadable("an object is missing");
    const auto found = object.find(name);
    if (found == object.end()) throw Unreadable(std::string("the field ") + name + " is missing");
    return *found;
}

std::string text(const Json& object, const char* name) {
    const Json& value = field(object, name);
    if (!value.is_string()) throw Unreadable(std::string("the field ") + name + " is no text");
    std::string bytes = decoded(value.get<std::string>());
    if (bytes.find('\0') != std::string::npos) throw Unreadable("a text holds a NUL");
    return bytes;
}

const Json& list(const Json& object, const char* name) {
    const Json& value = field(object, name);
    if (!value.is_array()) throw Unreadable(std::string("the field ") + name + " is no list");
    return value;
}

std::uint64_t number(const Json& object, const char* name) {
    const Json& value = field(object, name);
    if (!value.is_number_unsigned()) {
        throw Unreadable(std::string("the field ") + name + " is no number");
    }
    return value.get<std::uint64_t>();
}

bool isPlainPath(std::string_view path) {
    if (!path.starts_with('/') || path.size() < 2) return false;
    const std::vector<std::string> components = split(path.substr(1), '/');
    return std::ranges::none_of(components, [](const std::string& component) {
        return component.empty() || component == "." || component == "..";
    });
}

bool isHash(std::string_view text) {
    return text.size() == hashLength && text.find_first_not_of(hexDigits) == std::string_view::npos;
}

class Reader {
  public:
    explicit Reader(const PathMapping& onDisk) : onDisk_(onDisk) {}

    Receipt read(const Json& json) const {
        if (number(json, "schema") != receiptSchema) throw Unreadable("it is of another schema");
        Receipt receipt;
        receipt.identifier = text(json, "identifier");
        if (!isReceiptName(receipt.identifier)) throw Unreadable("its identifier is none");
        receipt.company = text(json, "company");
        receipt.product = text(json, "product");
        receipt.version = text(json, "version");
        const Json& complete = field(json, "complete");
        if (!complete.is_boolean()) throw Unreadable("the field complete is no truth value");
        receipt.isComplete = complete.get<bool>();
        receipt.since = text(json, "since");
        receipt.installed = text(json, "installed");
        receipt.bundle = text(json, "bundle");
        readPeople(json, receipt);
        readEntries(json, receipt);
        return receipt;
    }

  private:
    void readPeople(const Json& json, Receipt& receipt) const {
        for (const Json& user : list(json, "users")) {
            receipt.users.push_back({text(user, "login"), optionalPath(user, "home")});
        }
        for (const Json& host : list(json, "hosts")) {
            receipt.hosts.push_back({text(host, "name"), text(host, "user"),
                                     optionalPath(host, "application"),
                                     optionalPath(host, "plugIns")});
        }
    }

    void readEntries(const Json& json, Receipt& receipt) const {
        for (const Json& item : list(json, "items")) {
            receipt.items.push_back({path(item, "destination"), text(item, "source"),
                                     text(item, "rule"), text(item, "host"), text(item, "user")});
        }
        for (const Json& file : list(json, "files")) receipt.files.push_back(entry(file));
        for (const Json& folder : list(json, "folders")) {
            receipt.folders.push_back(path(folder, "path"));
        }
        for (const Json& file : list(json, "menuEntries")) {
            receipt.menuEntries.push_back(path(file, "path"));
        }
        receipt.log = optionalPath(json, "log");
    }

    std::string path(const Json& object, const char* name) const {
        const std::string value = text(object, name);
        if (!isPlainPath(value)) throw Unreadable("it has a path that is none: " + value);
        return onDisk_(value);
    }

    std::string optionalPath(const Json& object, const char* name) const {
        return text(object, name).empty() ? std::string() : path(object, name);
    }

    EntryRecord entry(const Json& object) const {
        EntryRecord record{.path = path(object, "path"), .mode = std::nullopt, .contents = {}};
        const std::string kind = text(object, "type");
        if (kind == nameOf(EntryKind::link)) {
            record.kind = EntryKind::link;
            record.contents = text(object, "target");
            return record;
        }
        if (!field(object, "mode").is_null()) {
            const std::uint64_t mode = number(object, "mode");
            if (mode > modeBits) throw Unreadable("a mode is none");
            record.mode = static_cast<std::uint32_t>(mode);
        }
        if (kind == nameOf(EntryKind::folder)) {
            record.kind = EntryKind::folder;
            return record;
        }
        if (kind != nameOf(EntryKind::file)) throw Unreadable("an entry is of no known type");
        record.size = number(object, "size");
        record.contents = text(object, "sha256");
        if (!isHash(record.contents)) throw Unreadable("a hash is none");
        return record;
    }

    const PathMapping& onDisk_;
};

Json entryJson(const EntryRecord& record, const PathMapping& asSeenOnDisk) {
    Json json = {{"path", encoded(asSeenOnDisk(record.path))}, {"type", nameOf(record.kind)}};
    if (record.kind == EntryKind::link) {
        json["target"] = encoded(record.contents);
        return json;
    }
    json["mode"] = record.mode ? Json(*record.mode) : Json();
    if (record.kind == EntryKind::file) {
        json["size"] = record.size;
        json["sha256"] = record.contents;
    }
    return json;
}

Json peopleJson(const Receipt& receipt, const PathMapping& seen) {
    Json users = Json::array();
    for (const auto& user : receipt.users) {
        users.push_back({{"login", encoded(user.login)}, {"home", encoded(seen(user.home))}});
    }
    Json hosts = Json::array();
    for (const auto& host : receipt.hosts) {
        hosts.push_back({{"name", encoded(host.name)},
                         {"user", encoded(host.user)},
                         {"application", encoded(seen(host.application))},
                         {"plugIns", encoded(seen(host.plugIns))}});
    }
    return {{"users", std::move(users)}, {"hosts", std::move(hosts)}};
}

void checkPaths(const Receipt& receipt,
                const std::function<bool(const Receipt&, const std::string&)>& isForbidden) {
    const auto check = [&](const std::string& path) {
        if (isForbidden(receipt, path))
            throw Unreadable("it names a folder of the system: " + path);
    };
    for (const auto& item : receipt.items) check(item.destination);
    for (const EntryRecord& file : receipt.files) check(file.path);
    for (const std::string& folder : receipt.folders) check(folder);
    for (const std::string& file : receipt.menuEntries) check(file);
    if (!receipt.log.empty()) check(receipt.log);
}

}  // namespace

std::string receiptText(const Receipt& receipt, const PathMapping& seen) {
    Json json = {{"schema", receiptSchema},
                 {"identifier", receipt.identifier},
                 {"company", encoded(receipt.company)},
                 {"product", encoded(receipt.product)},
                 {"version", encoded(receipt.version)},
                 {"complete", receipt.isComplete},
                 {"since", encoded(receipt.since)},
                 {"installed", encoded(receipt.installed)},
                 {"bundle", encoded(receipt.bundle)}};
    json.update(peopleJson(receipt, seen));
    json["items"] = Json::array();
    for (const auto& item : receipt.items) {
        json["items"].push_back({{"destination", encoded(seen(item.destination))},
                                 {"source", encoded(item.source)},
                                 {"rule", encoded(item.rule)},
                                 {"host", encoded(item.host)},
                                 {"user", encoded(item.user)}});
    }
    json["files"] = Json::array();
    for (const EntryRecord& file : receipt.files) json["files"].push_back(entryJson(file, seen));
    json["folders"] = Json::array();
    for (const std::string& folder : receipt.folders) {
        json["folders"].push_back({{"path", encoded(seen(folder))}});
    }
    json["menuEntries"] = Json::array();
    for (const std::string& file : receipt.menuEntries) {
        json["menuEntries"].push_back({{"path", encoded(seen(file))}});
    }
    json["log"] = encoded(seen(receipt.log));
    return json.dump(1) + "\n";
}

ReadReceipt parsedReceipt(
    std::string_view text, const PathMapping& onDisk,
    const std::function<bool(const Receipt& receipt, const std::string& path)>& isForbidden) {
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded()) return {{}, "it is no JSON"};
    try {
        Receipt receipt = Reader(onDisk).read(json);
        checkPaths(receipt, isForbidden);
        return {std::move(receipt), ""};
    } catch (const Unreadable& problem) {
        return {{}, problem.what()};
    }
}

bool isReceiptName(std::string_view identifier) {
    constexpr std::string_view allowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_";
    constexpr std::size_t longest = 200;
    return !identifier.empty() && identifier.size() <= longest && !identifier.starts_with('.') &&
           identifier.find_first_not_of(allowed) == std::string_view::npos;
}

}  // namespace installer
