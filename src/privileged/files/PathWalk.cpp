#include "privileged/files/PathWalk.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr int maximumLinks = 40;

/// The components from last to first, without empty ones and ".".
std::vector<std::string> reversedComponents(std::string_view path) {
    std::vector<std::string> components;
    while (!path.empty()) {
        const auto slash = path.rfind('/');
        const auto name = path.substr(slash == std::string_view::npos ? 0 : slash + 1);
        if (!name.empty() && name != ".") components.emplace_back(name);
        path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
    }
    return components;
}

bool canBeChangedByRootAlone(const struct stat& folder) {
    return folder.st_uid == 0 && (folder.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

class PathWalk {
  public:
    PathWalk(FileDescriptor start, const LinkTrust& trust)
        : trust_(trust), folder_(std::move(start)) {}

    Result<FileDescriptor> open(std::string_view path) {
        if (const auto error = append(path)) return error;
        while (!remaining_.empty()) {
            const std::string name = std::move(remaining_.back());
            remaining_.pop_back();
            if (const auto error = name == ".." ? goUp() : goDown(name)) return error;
        }
        return std::move(folder_);
    }

  private:
    std::error_code append(std::string_view path) {
        if (path.starts_with('/')) {
            if (const auto error = startAtRoot()) return error;
        }
        for (auto& component : reversedComponents(path)) {
            remaining_.push_back(std::move(component));
        }
        return {};
    }

    std::error_code startAtRoot() {
        folder_.reset(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
        struct stat status = {};
        if (!folder_ || fstat(folder_.get(), &status) != 0) return systemError();
        rootAlone_ = canBeChangedByRootAlone(status);
        return {};
    }

    std::error_code goDown(const std::string& name) {
        FileDescriptor entry(openat(folder_.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status = {};
        if (!entry || fstat(entry.get(), &status) != 0) return systemError();
        if (S_ISLNK(status.st_mode)) return follow(entry, status);
        if (!S_ISDIR(status.st_mode)) return systemError(ENOTDIR);
        folder_ = std::move(entry);
        rootAlone_ = rootAlone_ && canBeChangedByRootAlone(status);
        return {};
    }

    std::error_code goUp() {
        if (!trust_.mayGoUp(rootAlone_)) return systemError(ELOOP);
        FileDescriptor parent(openat(folder_.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!parent) return systemError();
        folder_ = std::move(parent);
        return {};
    }

    std::error_code follow(const FileDescriptor& link, const struct stat& status) {
        if (!trust_.mayFollow(status, rootAlone_) || ++linksFollowed_ > maximumLinks) {
            return systemError(ELOOP);
        }
        std::array<char, PATH_MAX> target = {};
        const auto length = readlinkat(link.get(), "", target.data(), target.size());
        if (length < 0) return systemError();
        return append(std::string_view(target.data(), static_cast<std::size_t>(length)));
    }

    const LinkTrust& trust_;
    FileDescriptor folder_;
    bool rootAlone_ = false;              ///< a folder that was given may lie below anybody's
    std::vector<std::string> remaining_;  ///< the next one last
    int linksFollowed_ = 0;
};

}  // namespace

bool LinkTrust::mayFollow(const struct stat& link, bool rootAlone) const {
    switch (kind_) {
        case Kind::any:
            return true;
        case Kind::ofOwners:
            return link.st_uid == 0 || link.st_uid == user_;
        case Kind::inRootsFolders:
            return rootAlone;
    }
    return false;
}

bool LinkTrust::mayGoUp(bool rootAlone) const {
    return kind_ != Kind::inRootsFolders || rootAlone;
}

Result<FileDescriptor> walkPath(FileDescriptor start, std::string_view path,
                                const LinkTrust& trust) {
    return PathWalk(std::move(start), trust).open(path);
}

}  // namespace installer
