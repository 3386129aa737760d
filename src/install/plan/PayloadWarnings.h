#pragma once

namespace installer {

class SystemLog;
struct InstallPlan;

/// Tells the makers of a payload, in the system log, what in it is never installed whatever the
/// hosts: one line for each entry that the plan leaves out. A missing payload is one line. Tells
/// everybody, with one line for each, which items the plan refuses.
void logPayloadWarnings(const InstallPlan& plan, SystemLog& log);

}  // namespace installer
