#include "tests/support/FakeChildProcess.h"

#include <optional>

#include "foundation/observers/ObserverList.h"

namespace installer::test {

namespace {

using Pipe = ChildProcess::Pipe;

struct FakePipe {
    std::string data;
    bool isAsked = false;
    bool isClosed = false;  ///< by the program
    bool isAtEnd = false;   ///< the reader knows
    ObserverList<> observers;

    [[nodiscard]] bool isReadable() const { return !data.empty() || isClosed; }

    void tellIfAsked() {
        if (isReadable() && std::exchange(isAsked, false)) observers.call();
    }
};

/// What is left of the process when the object is gone: nothing, so that nobody is told of it.
struct State {
    std::map<Pipe, FakePipe> pipes;
    ObserverList<> termination;

    State() {
        pipes[Pipe::standardOutput];
        pipes[Pipe::standardError];
    }

    void write(Pipe pipe, const std::string& text) {
        pipes[pipe].data += text;
        pipes[pipe].tellIfAsked();
    }
};

void end(const std::weak_ptr<State>& weakState) {
    // A handler may destroy the process.
    for (const Pipe pipe : {Pipe::standardOutput, Pipe::standardError}) {
        const auto state = weakState.lock();
        if (!state) return;
        state->pipes[pipe].isClosed = true;
        state->pipes[pipe].tellIfAsked();
    }
    if (const auto state = weakState.lock()) state->termination.call();
}

class FakeChildProcess : public ChildProcess {
  public:
    FakeChildProcess(FakeEventLoop& loop, std::optional<FakeChildProcesses::Program> program)
        : loop_(loop), program_(std::move(program)) {}

    std::error_code launch() override {
        if (isLaunched_) return std::make_error_code(std::errc::operation_not_permitted);
        if (!program_) return std::make_error_code(std::errc::no_such_file_or_directory);
        isLaunched_ = true;
        const std::weak_ptr<State> process = state_;
        for (const auto& [pipe, text] : *program_) {
            loop_.coming.emplace_back([process, pipe, text] {
                if (const auto state = process.lock()) state->write(pipe, text);
            });
        }
        loop_.coming.emplace_back([process] { end(process); });
        return {};
    }

    void waitForDataAndNotify(Pipe pipe) override {
        FakePipe& asked = state_->pipes[pipe];
        if (asked.isAsked || asked.isAtEnd) return;
        asked.isAsked = true;
        if (!asked.isReadable()) return;
        loop_.waiting.emplace_back([process = std::weak_ptr(state_), pipe] {
            if (const auto state = process.lock()) state->pipes[pipe].tellIfAsked();
        });
    }

    std::string availableData(Pipe pipe) override {
        FakePipe& source = state_->pipes[pipe];
        source.isAtEnd = source.isClosed;
        return std::exchange(source.data, {});
    }

    Subscription onDataAvailable(Pipe pipe, std::function<void()> handler) override {
        return state_->pipes[pipe].observers.add(std::move(handler));
    }
    Subscription onTerminated(std::function<void()> handler) override {
        return state_->termination.add(std::move(handler));
    }

  private:
    FakeEventLoop& loop_;
    std::optional<FakeChildProcesses::Program> program_;
    std::shared_ptr<State> state_ = std::make_shared<State>();
    bool isLaunched_ = false;
};

}  // namespace

std::unique_ptr<ChildProcess> FakeChildProcesses::create(
    const std::string& path, const std::vector<std::string>& /*arguments*/) {
    const auto program = programs.find(path);
    if (program == programs.end()) return std::make_unique<FakeChildProcess>(loop_, std::nullopt);
    return std::make_unique<FakeChildProcess>(loop_, program->second);
}

}  // namespace installer::test
