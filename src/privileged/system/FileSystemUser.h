#pragma once

#include <system_error>

#include <sys/types.h>

namespace installer {

/// A user by whose rights a process of root opens files: what that user may not read stays closed,
/// and what only that user may read, as on many network disks, can be opened.
class FileSystemUser {
  public:
    /// With the user's own group; with the one of nobody if the system does not know the user.
    explicit FileSystemUser(uid_t user);

    [[nodiscard]] uid_t user() const { return user_; }
    [[nodiscard]] gid_t group() const { return group_; }

    /// Root, for what is written while another user reads; null if none does.
    [[nodiscard]] static const FileSystemUser* rootWhile(const FileSystemUser* other);

    /// Gives this process the user's other groups in place of root's. They are not switched for
    /// each file, and do not matter while it acts as root.
    [[nodiscard]] std::error_code takeGroups() const;

  private:
    FileSystemUser(uid_t user, gid_t group) : user_(user), group_(group) {}

    uid_t user_;
    gid_t group_;
};

/// While this object lives, this thread is that user: it opens files by the user's rights, and what
/// it makes belongs to them. Nothing changes for null. The process must be root, and ends if the
/// change is not possible. The user can end the thread's process meanwhile, and do no more with it:
/// nobody may read or trace a process that was root.
class ActingAs {
  public:
    explicit ActingAs(const FileSystemUser* user);
    ~ActingAs();
    ActingAs(const ActingAs&) = delete;
    ActingAs& operator=(const ActingAs&) = delete;

  private:
    bool isActing_;
    uid_t userBefore_ = 0;
    gid_t groupBefore_ = 0;
};

}  // namespace installer
