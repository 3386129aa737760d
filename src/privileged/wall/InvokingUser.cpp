#include "privileged/wall/InvokingUser.h"

#include <charconv>
#include <cstdlib>

#include <unistd.h>

#include "privileged/system/Accounts.h"

namespace installer {

namespace {

/// getenv returns only the first of several.
bool standsTwice(std::string_view variable) {
    int count = 0;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        if (text.starts_with(variable) && text.substr(variable.size()).starts_with('=')) ++count;
    }
    return count > 1;
}

}  // namespace

std::optional<InvokingUser> InvokingUser::whoStartedBy(StartedBy program) {
    if (program == StartedBy::root) return InvokingUser(::getuid());
    // sudo can be told to keep the caller's environment, and so a PKEXEC_UID that the caller chose.
    const char* variable = program == StartedBy::polkit ? "PKEXEC_UID" : "SUDO_UID";
    const char* text = std::getenv(variable);
    if (text == nullptr || standsTwice(variable)) return std::nullopt;
    const std::string_view digits(text);
    uid_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    if (!whole || number == static_cast<uid_t>(-1)) return std::nullopt;
    return InvokingUser(number);
}

const FileSystemUser* InvokingUser::reader() const {
    if (number_ == 0) return nullptr;
    if (!reader_) reader_.emplace(number_);
    return &*reader_;
}

bool InvokingUser::isNamed(std::string_view name) {
    // One run names the same user for every file, and a look-up takes longer than the action.
    if (!knownName_.empty() && name == knownName_) return true;
    const auto account = userNamed(name);
    if (!account || account.value().number != number_) return false;
    knownName_ = name;
    return true;
}

}  // namespace installer
