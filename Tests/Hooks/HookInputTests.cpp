// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookInput.h"

#include "Hooks/HookCalls.h"
#include "Hooks/HookHome.h"

#include <gmock/gmock.h>

#include <QJsonArray>

#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using namespace hookCalls;
using testing::IsEmpty;
using testing::SizeIs;

/// Closes itself.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {
        if (number < 0) {
            throw std::runtime_error("nothing was opened");
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    operator int() const { return number_; }
    void close() {
        if (number_ >= 0) {
            ::close(number_);
        }
        number_ = -1;
    }

private:
    int number_;
};

Descriptor openToRead(const std::string& path) {
    return Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

std::array<int, 2> connectedSockets() {
    std::array<int, 2> ends{-1, -1};
    socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data());
    return ends;
}

/// What is sent to one end is read from the other.
struct Connection {
    std::array<int, 2> ends = connectedSockets();
    Descriptor theirs{ends[0]};
    Descriptor ours{ends[1]};
};

class HookInput : public HookHome {
protected:
    Command command() const { return hookCommand(home.path()); }

    void expectNothingDone() const { EXPECT_THAT(everything(), IsEmpty()); }

    void expectNothingDoneWith(const std::string& input) const {
        callWith(input);
        EXPECT_THAT(everything(), IsEmpty()) << input.substr(0, 200);
    }
};

TEST_F(HookInput, MayBeNothing) {
    expectSilence(run(command()));
    expectSilence(run(command(), openToRead("/dev/null")));
    expectNothingDoneWith("");
    expectNothingDoneWith(" \n\n");
}

TEST_F(HookInput, MayBeNoJson) {
    for (const std::string& input :
         std::vector<std::string>{"Stop", "{", "}", "null", "\"Stop\"", "7", "hook_event_name=Stop",
                                  std::string("\x7F"
                                              "ELF\x02\0\0\xFF",
                                              8),
                                  std::string(1'000, '\0'), std::string(1'000, '\xFF'),
                                  std::string(1'000'000, '['), std::string(1'000'000, '{')}) {
        expectNothingDoneWith(input);
    }
}

TEST_F(HookInput, MayBeNoObject) {
    const std::string call = text(permissionRequest());
    expectNothingDoneWith('[' + call + ']');
    expectNothingDoneWith(call + call);
    expectNothingDoneWith(call + '\n' + call);
    expectNothingDoneWith("\xEF\xBB\xBF" + call);
    expectNothingDoneWith("null " + call);
}

TEST_F(HookInput, MayBeCutOffAnywhere) {
    const std::string call = R"({"session_id":"s","hook_event_name":"PermissionRequest",)"
                             R"("tool_name":"Bash","tool_input":{"command":"a"}})";
    for (std::size_t length = 0; length < call.size(); ++length) {
        expectNothingDoneWith(call.substr(0, length));
    }
    callWith(call);
    EXPECT_THAT(pending(), SizeIs(1));
}

TEST_F(HookInput, MayLackKeysOrHaveThemOfAnotherKind) {
    for (const char* key : {"session_id", "hook_event_name", "tool_name"}) {
        QJsonObject call = permissionRequest();
        call.remove(key);
        expectNothingDoneWith(text(call));
        for (const QJsonValue& value :
             {QJsonValue(), QJsonValue(7), QJsonValue(true), QJsonValue(""),
              QJsonValue(QJsonArray{"Stop"}), QJsonValue(QJsonObject{{"a", "Stop"}})}) {
            call.insert(key, value);
            expectNothingDoneWith(text(call));
        }
    }
    expectNothingDoneWith("{}");
}

TEST_F(HookInput, MayBeNestedTooDeep) {
    QJsonObject call = permissionRequest();
    call.insert("tool_input", "DEPTH");
    std::string input = text(call);
    const std::string depth(5'000, '[');
    input.replace(input.find("\"DEPTH\""), 7, depth + std::string(5'000, ']'));
    expectNothingDoneWith(input);
}

TEST_F(HookInput, MayBeTwoHundredMegabytesOfNothing) {
    const std::string nothing = home.path() + "/../nothing";
    { const Descriptor made(open(nothing.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)); }
    std::filesystem::resize_file(nothing, 200'000'000);
    expectSilence(run(command(), openToRead(nothing)));
    expectNothingDone();
}

TEST_F(HookInput, OfMegabytesIsRead) {
    const std::string megabytes(5'000'000, 'x');
    const std::string file = home.path() + "/../call";
    const auto callWithFile = [&](const QJsonObject& call) {
        home.write("../call", text(call));
        expectSilence(run(command(), openToRead(file)));
    };
    callWithFile(permissionRequest(
        {{"tool_name", "Write"},
         {"tool_input", QJsonObject{{"content", QString::fromStdString(megabytes)},
                                    {"file_path", "/w/a.txt"}}}}));
    callWithFile(permissionRequest(
        {{"tool_input", QJsonObject{{"command", QString::fromStdString(megabytes)}}}}));
    EXPECT_THAT(shown(), testing::ElementsAre(session + ": Bash: " + std::string(48, 'x') + "…",
                                              session + ": Write: a.txt"));
}

TEST_F(HookInput, IsReadUpToALimit) {
    const std::string path = home.path() + "/../input";
    const auto inputOf = [&](std::size_t size) {
        home.write("../input", std::string(size, 'x'));
        // Time enough, whatever else the machine does.
        return readInput(openToRead(path), std::chrono::minutes(1));
    };
    EXPECT_EQ(inputOf(1).size(), 1U);
    EXPECT_EQ(inputOf(largestInput).size(), largestInput);
    EXPECT_EQ(inputOf(largestInput + 1).size(), 0U);
    EXPECT_EQ(inputOf(largestInput + 100'000).size(), 0U);
}

TEST_F(HookInput, IsReadToItsEndThoughItIsTooLarge) {
    Connection connection;
    const std::string megabyte(1'048'576, 'x');
    std::size_t sent = 0;
    std::thread writer([&] {
        while (sent < 3 * largestInput) {
            const ssize_t count =
                send(connection.ours, megabyte.data(), megabyte.size(), MSG_NOSIGNAL);
            if (count < 0) {
                break;
            }
            sent += static_cast<std::size_t>(count);
        }
        shutdown(connection.ours, SHUT_WR);
    });
    EXPECT_EQ(readInput(connection.theirs, std::chrono::minutes(1)), "");
    connection.theirs.close();
    writer.join();
    EXPECT_GE(sent, 3 * largestInput);
}

TEST_F(HookInput, IsTooLargeThoughItsLastPieceWouldFit) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    const Descriptor theirs(ends[0]);
    Descriptor ours(ends[1]);
    const std::string piece(65'536, 'x');
    std::thread writer([&] {
        send(ours, "x", 1, MSG_NOSIGNAL);
        for (std::size_t sent = 0; sent < largestInput; sent += piece.size()) {
            send(ours, piece.data(), piece.size(), MSG_NOSIGNAL);
        }
        send(ours, "x", 1, MSG_NOSIGNAL);
        ours.close();
    });
    EXPECT_EQ(readInput(theirs, std::chrono::minutes(1)), "");
    writer.join();
}

TEST_F(HookInput, IsWaitedForThroughInterruptions) {
    static std::atomic<int> interruptions;
    interruptions = 0;
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = [](int) { ++interruptions; };
    ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);
    const Connection connection;
    std::atomic<bool> isOver = false;
    std::string input;
    std::thread reader([&] {
        input = readInput(connection.theirs, std::chrono::minutes(1));
        isOver = true;
    });
    while (interruptions < 100 && !isOver) {
        pthread_kill(reader.native_handle(), SIGUSR1);
        std::this_thread::yield();
    }
    send(connection.ours, "call", 4, MSG_NOSIGNAL);
    shutdown(connection.ours, SHUT_WR);
    reader.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_EQ(input, "call");
}

TEST_F(HookInput, MayComeInPieces) {
    Connection connection;
    const std::string call = text(permissionRequest());
    std::thread writer([&] {
        for (const char c : call) {
            send(connection.ours, &c, 1, MSG_NOSIGNAL);
        }
        shutdown(connection.ours, SHUT_WR);
    });
    EXPECT_EQ(readInput(connection.theirs, std::chrono::minutes(1)), call);
    writer.join();
}

TEST_F(HookInput, MayComeThroughAPipeOrFromAFile) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const std::string call = text(permissionRequest()) + '\n';
    ASSERT_EQ(::write(writing, call.data(), call.size()), static_cast<ssize_t>(call.size()));
    writing.close();
    expectSilence(run(command(), reading));
    EXPECT_THAT(pending(), SizeIs(1));
    home.write("../call", call);
    expectSilence(run(command(), openToRead(home.path() + "/../call")));
    EXPECT_THAT(pending(), SizeIs(2));
}

TEST_F(HookInput, MayComeFromAnEndThatDoesNotBlock) {
    const Connection connection;
    ASSERT_EQ(fcntl(connection.theirs, F_SETFL, O_NONBLOCK), 0);
    const std::string call = text(permissionRequest());
    std::thread writer([&] {
        send(connection.ours, call.data(), call.size(), MSG_NOSIGNAL);
        shutdown(connection.ours, SHUT_WR);
    });
    EXPECT_EQ(readInput(connection.theirs, std::chrono::minutes(1)), call);
    writer.join();
}

TEST_F(HookInput, IsNotWaitedForWithoutEnd) {
    const Connection silent;
    expectSilence(run(command(), silent.theirs));
    expectNothingDone();
    const Connection unfinished;
    const std::string call = text(permissionRequest());
    send(unfinished.ours, call.data(), call.size() - 1, MSG_NOSIGNAL);
    expectSilence(run(command(), unfinished.theirs));
    expectNothingDone();
}

TEST_F(HookInput, CountsOnceItIsWholeThoughNobodyEndsIt) {
    const Connection connection;
    const std::string call = text(permissionRequest()) + '\n';
    send(connection.ours, call.data(), call.size(), MSG_NOSIGNAL);
    expectSilence(run(command(), connection.theirs));
    EXPECT_THAT(pending(), SizeIs(1));
}

TEST_F(HookInput, IsNotReadForEver) {
    expectSilence(run(command(), openToRead("/dev/zero")));
    expectNothingDone();
    Connection connection;
    std::thread writer([&] {
        while (send(connection.ours, " ", 1, MSG_NOSIGNAL) == 1) {
        }
    });
    expectSilence(run(command(), connection.theirs));
    connection.theirs.close();
    writer.join();
    expectNothingDone();
}

TEST_F(HookInput, MayBeNoFile) {
    expectSilence(run(command(), openToRead(home.path())));
    Command closed = command();
    closed.arguments = {"sh", "-c", "exec \"$0\" <&-", closed.program};
    closed.program = "/bin/sh";
    expectSilence(run(closed));
    const Descriptor writeOnly(open("/dev/null", O_WRONLY | O_CLOEXEC));
    expectSilence(run(command(), writeOnly));
    expectNothingDone();
}

TEST_F(HookInput, IsNotReadFromATerminal) {
    const Descriptor keyboard(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(grantpt(keyboard), 0);
    ASSERT_EQ(unlockpt(keyboard), 0);
    const char* name = ptsname(keyboard);
    ASSERT_NE(name, nullptr);
    const Descriptor terminal(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
    // A line, and the end of the input.
    const std::string typed = text(event("PermissionRequest", {{"tool_name", "Bash"}})) + "\n\x04";
    ASSERT_EQ(::write(keyboard, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    expectSilence(run(command(), terminal));
    expectNothingDone();
}

} // namespace
} // namespace sallowmere
