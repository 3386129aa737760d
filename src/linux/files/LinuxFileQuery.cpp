#include "linux/files/LinuxFileQuery.h"

#include <sys/eventfd.h>

namespace installer {

namespace {

/// Some tens of microseconds on a local disk: too short a turn to be noticed.
constexpr int stepsOfATurn = 16;

}  // namespace

void LinuxFileQuery::start() {
    stop();
    found_.clear();
    // The event loop watches descriptors only. This one is always readable and never read, so
    // every turn calls back.
    alwaysReadable_.reset(::eventfd(1, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!alwaysReadable_) return;
    search_.emplace(pattern_, scopes_, memoryLimit_);
    turns_ = watcher_.watch(alwaysReadable_.get(), [this] { gather(); });
}

void LinuxFileQuery::stop() {
    turns_.cancel();
    alwaysReadable_.reset();
    search_.reset();
}

void LinuxFileQuery::gather() {
    if (search_ && !search_->goOn(stepsOfATurn, found_)) stop();
}

std::unique_ptr<FileQuery> LinuxFileQueries::create() {
    return std::make_unique<LinuxFileQuery>(watcher_, memoryLimit_);
}

}  // namespace installer
