// A helper that does nothing, for tests of its peer: what it is called and asked decides what it
// says. Asked for "/plan", it prints what it was told of the plan. Called "...old", it says hello
// in another version; "...mute", it ends without a hello;
// "...babbling", it says what is no message.

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

#include "privileged/protocol/Message.h"
#include "privileged/protocol/MessageStream.h"

using namespace installer;

int main(int /*count*/, char** arguments) {
    const std::string name = arguments[0];
    MessageStream stream(STDIN_FILENO, STDOUT_FILENO);
    std::string hello = encodedHello();
    if (name.ends_with("mute")) return 126;
    if (name.ends_with("babbling")) hello = "password: \n----------------";
    if (name.ends_with("old")) hello[message_limits::headSize] = 99;
    static_cast<void>(!stream.send(hello));
    std::vector<std::string> planned;
    while (const std::optional<Message> message = stream.receive()) {
        if (const auto plan = planTexts(*message)) {
            planned.insert(planned.end(), plan->texts.begin(), plan->texts.end());
            continue;
        }
        const ToolRequest request = toolRequest(*message).value();
        std::string answer;
        if (request.tool == "/print") {
            for (const std::string& text : request.arguments) answer += encodedOutput(text);
        } else if (request.tool == "/plan") {
            for (const std::string& text : planned) answer += encodedOutput(text + "\n");
        } else if (request.tool == "/progress") {
            for (const std::string& text : request.arguments) {
                answer += encodedProgress(std::stoull(text));
            }
        } else if (request.tool == "/await") {
            // Somebody has to write into the FIFO.
            std::ifstream fifo(request.arguments.at(0));
            std::string line;
            std::getline(fifo, line);
            answer = encodedOutput(line);
        } else if (request.tool == "/append") {
            std::ofstream(request.arguments.at(0), std::ios::app)
                << request.arguments.at(1) << '\n';
        } else if (request.tool == "/die") {
            if (!request.arguments.empty()) {
                static_cast<void>(!stream.send(encodedOutput(request.arguments[0])));
            }
            ::_exit(0);
        } else if (request.tool == "/babble") {
            answer = "no message at all";
        }
        static_cast<void>(!stream.send(answer + encodedEnded(7)));
    }
    return 0;
}
