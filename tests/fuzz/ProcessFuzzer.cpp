// What the kernel and the processes themselves say about running programs, and the names made of
// it. Input: the status line, the program's path, the bundle's name, the arguments with a NUL
// after each.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/desktop/ApplicationName.h"
#include "linux/desktop/ProcessFacts.h"
#include "ports/Bundle.h"
#include "tests/fuzz/FuzzInput.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using fuzz::require;

/// Every path is a bundle of this name.
class BundlesEverywhere : public Bundles {
  public:
    explicit BundlesEverywhere(std::string name) : name_(std::move(name)) {}
    std::unique_ptr<Bundle> open(const std::string& path) override {
        // A relative path would be looked for in the installer's own working folder.
        require(path.starts_with('/'));
        auto bundle = std::make_unique<test::FakeBundle>();
        bundle->information["CFBundleName"] = name_;
        return bundle;
    }

  private:
    std::string name_;
};

void checkStatus(const std::string& line) {
    const std::optional<ProcessStatus> status = parsedProcessStatus(line);
    if (status) require(line.find("(" + status->shortName + ") ") != std::string::npos);
}

/// A process chooses its name: nothing in it may be taken for what follows the name.
void checkNameInStatus(const std::string& name) {
    const auto status = parsedProcessStatus("7 (" + name + ") S 1 7 7 0 -1 4194304 0 0");
    require(status && status->shortName == name && !status->hasEnded && !status->isKernelThread);
    const auto thread = parsedProcessStatus("7 (" + name + ") Z 1 7 7 0 -1 2129984 0 0");
    require(thread && thread->hasEnded && thread->isKernelThread);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> parts = fuzz::parts(fuzz::textOf(data, size), 4);
    checkStatus(parts[0]);
    checkNameInStatus(parts[1]);
    BundlesEverywhere bundles(parts[2]);
    std::vector<std::string> arguments = split(parts[3], '\0');
    for (const std::string& shortName : {lastPathComponent(parts[1]), arguments.front()}) {
        const ProcessFacts facts{shortName.substr(0, 15), arguments, parts[1]};
        require(isUtf8(applicationName(facts, bundles)));
    }
    const ProcessFacts withoutArguments{parts[1].substr(0, 15), {}, ""};
    require(isUtf8(applicationName(withoutArguments, bundles)));
    return 0;
}
