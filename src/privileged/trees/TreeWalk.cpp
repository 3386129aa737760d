#include "privileged/trees/TreeWalk.h"

#include <vector>

#include <dirent.h>
#include <fcntl.h>

#include "privileged/files/FolderChain.h"
#include "privileged/files/FolderListing.h"
#include "privileged/system/SystemError.h"

namespace installer {

Result<FileDescriptor> TreeVisitor::enterFolder(int parent, const std::string& name) {
    FileDescriptor folder(
        openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) return systemError();
    return folder;
}

namespace {

class TreeWalk {
  public:
    TreeWalk(int parent, TreeVisitor& visitor, OnFailure onFailure)
        : topParent_(parent), visitor_(visitor), onFailure_(onFailure) {}

    std::error_code run(const std::string& name) {
        const auto type = entryType(topParent_, name);
        if (!type) return type.error();
        visit(topParent_, {name, type.value()});
        while (!levels_.empty() && !stopped_) {
            Level& level = levels_.back();
            if (level.next < level.entries.size()) {
                // Moved out: a visit of a folder makes `levels_` grow.
                const FolderEntry entry = std::move(level.entries[level.next++]);
                visit(chain_.current(), entry);
            } else {
                leave();
            }
        }
        return firstError_;
    }

  private:
    struct Level {
        std::string name;
        std::vector<FolderEntry> entries;
        std::size_t next = 0;
    };

    void visit(int parent, const FolderEntry& entry) {
        if (entry.type == DT_DIR) {
            enter(parent, entry.name);
        } else {
            note(visitor_.visitEntry(parent, entry.name, entry.type));
        }
    }

    void enter(int parent, const std::string& name) {
        auto folder = visitor_.enterFolder(parent, name);
        if (!folder) return note(folder.error());
        auto entries = listFolder(folder.value().get());
        note(entries.error());
        chain_.push(std::move(folder).value());
        levels_.push_back(
            {name, entries ? std::move(entries).value() : std::vector<FolderEntry>()});
    }

    void leave() {
        if (chain_.depth() > 1) {
            if (const auto error = chain_.openParent()) {
                note(error);
                stopped_ = true;
                return;
            }
        }
        const int parent = chain_.depth() > 1 ? chain_.parent() : topParent_;
        note(visitor_.leaveFolder(parent, levels_.back().name, chain_.current()));
        chain_.pop();
        levels_.pop_back();
    }

    void note(std::error_code error) {
        if (!error) return;
        if (!firstError_) firstError_ = error;
        if (onFailure_ == OnFailure::stop) stopped_ = true;
    }

    int topParent_;
    TreeVisitor& visitor_;
    OnFailure onFailure_;
    FolderChain chain_;
    std::vector<Level> levels_;
    std::error_code firstError_;
    bool stopped_ = false;
};

}  // namespace

std::error_code walkTree(int parent, const std::string& name, TreeVisitor& visitor,
                         OnFailure onFailure) {
    return TreeWalk(parent, visitor, onFailure).run(name);
}

}  // namespace installer
