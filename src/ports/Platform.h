#pragma once

namespace installer {

class Alerts;
class ApplicationDatabase;
class Authorizations;
class Bundle;
class Bundles;
class ChildProcesses;
class Clock;
class EventLoop;
class FileManager;
class FileQueries;
class NotificationCenter;
class PreferencesStore;
class SearchPaths;
class SystemLog;

/// All that the core asks of the machine it runs on. Made once, by `main` or by a test, and handed
/// to constructors; it outlives everything that was made with it.
struct Platform {
    FileManager& files;
    FileQueries& fileQueries;
    Authorizations& authorizations;
    ChildProcesses& processes;
    EventLoop& eventLoop;
    PreferencesStore& preferences;
    Bundle& bundle;  ///< the running one
    Bundles& bundles;
    SearchPaths& searchPaths;
    ApplicationDatabase& applications;
    Alerts& alerts;
    SystemLog& log;
    Clock& clock;
    NotificationCenter& notifications;
};

}  // namespace installer
