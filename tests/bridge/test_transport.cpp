// test-transport: the link through window messages to a test-simulator.exe beside it, until each
// result that the transport can have has come about.

#include <windows.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "common/services.h"
#include "simlink/message_transport.h"
#include "simlink/mod_fsuipc.h"

namespace norvane::test {
namespace {

using namespace std::chrono_literals;

int faults = 0;

void Expect(bool holds, const std::string& what) {
    if (holds)
        return;
    ++faults;
    std::printf("FAULT: %s\n", what.c_str());
    std::fflush(stdout);
}

void Expect_Result(int result, int expected, const std::string& what) {
    Expect(result == expected,
           what + ": result " + std::to_string(result) + ", expected " + std::to_string(expected));
}

/// The name that a link of this process gives its block and atom.
std::string Block_Name() {
    std::array<char, 40> name{};
    (void)std::snprintf(name.data(), name.size(), "FSASMLIB:IPC:%lX:1", ::GetCurrentProcessId());
    return name.data();
}

class Sleeping_Clock : public Clock {
  public:
    [[nodiscard]] Date_Time Local_Now() override { return {}; }
    [[nodiscard]] std::chrono::microseconds Monotonic() override { return {}; }
    void Sleep(std::chrono::microseconds duration) override {
        std::this_thread::sleep_for(duration);
    }
    [[nodiscard]] Time_Zone Zone() override { return {}; }
};

/// A test-simulator.exe, from when its window is there until the scope ends.
class Simulator {
  public:
    explicit Simulator(const std::string& switches = {}) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE writing = nullptr;
        ::CreatePipe(&m_reading, &writing, &inherited, 0);
        ::SetHandleInformation(m_reading, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOA start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = writing;
        start.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
        PROCESS_INFORMATION made{};
        std::string path(MAX_PATH, '\0');
        path.resize(::GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
        path.resize(path.find_last_of('\\') + 1);
        std::string command = "\"" + path + "test-simulator.exe\" " + switches;
        const bool started = ::CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0,
                                              nullptr, nullptr, &start, &made) != 0;
        ::CloseHandle(writing);
        m_process = made.hProcess;
        if (started)
            ::CloseHandle(made.hThread);
        Expect(started && Next_Line() == "ready", "the simulator \"" + switches + "\" starts");
    }
    ~Simulator() { End(); }
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    void End() {
        if (m_process == nullptr)
            return;
        ::TerminateProcess(m_process, 0);
        ::WaitForSingleObject(m_process, 5000);
        ::CloseHandle(m_process);
        ::CloseHandle(m_reading);
        m_process = nullptr;
    }

    std::string Next_Line() const {
        std::string line;
        char character = 0;
        DWORD got = 0;
        while (::ReadFile(m_reading, &character, 1, &got, nullptr) != 0 && got == 1 &&
               character != '\n') {
            if (character != '\r')
                line += character;
        }
        return line;
    }

  private:
    HANDLE m_reading = nullptr;
    HANDLE m_process = nullptr;
};

struct Link {
    Message_Transport transport{100ms};
    Sleeping_Clock clock;
    modFSUIPC fsuipc{transport, clock};

    int Open(int version = 0) {
        int result = -1;
        const bool good = fsuipc.IPC_Open(version, result);
        Expect(good == (result == 0), "the answer of an opening agrees with its result");
        return result;
    }

    int Read(std::uint32_t offset, std::span<std::byte> bytes) {
        int result = -1;
        if (fsuipc.IPC_Read(offset, static_cast<std::uint32_t>(bytes.size()), bytes.data(), result))
            fsuipc.IPC_Process(result);
        return result;
    }
};

struct Opening_Row {
    const char* what;
    const char* switches;
    int version;
    int expected;
};

constexpr auto openings = std::to_array<Opening_Row>({
    {"a simulator of any version", "", 0, 0},
    {"the simulator asked for", "", 7, 0},
    {"another simulator than asked for", "", 8, 8},
    {"the older window", "--class FS98MAIN", 0, 0},
    {"an FSUIPC that is too old", "--fsuipc 0x19980004", 0, 7},
    {"the oldest FSUIPC", "--fsuipc 0x19980005", 0, 0},
    {"no check pattern", "--simulator 0x12340007", 0, 7},
    {"no check pattern behind the older window", "--class FS98MAIN --simulator 7", 0, 14},
    {"a refusal", "--refuse", 0, 13},
    {"no answer in time", "--hang-ms 400", 0, 11},
    {"a simulator that dies in its first message", "--vanish-at 1", 0, 12},
    {"a simulator that dies later", "--vanish-at 2", 0, 0},
});

void Open_All() {
    for (const Opening_Row& row : openings) {
        const Simulator simulator(row.switches);
        Link link;
        Expect_Result(link.Open(row.version), row.expected, row.what);
        Expect(link.fsuipc.Is_Open() == (row.expected == 0), std::string(row.what) + ": open");
    }
    Link link;
    Expect_Result(link.Open(), 2, "no simulator");
}

void Exchange() {
    const Simulator simulator;
    Link link;
    std::array<std::byte, 40> bytes{};
    Expect_Result(link.Open(), 0, "opening");
    Expect(simulator.Next_Line() == "block " + Block_Name(), "the block's name is the protocol's");

    int result = -1;
    link.fsuipc.IPC_WriteString(0x3380, 20, "Hello from the link", result);
    link.fsuipc.IPC_Process(result);
    Expect_Result(result, 0, "a write");
    Expect_Result(link.Read(0x3380, bytes), 0, "reading it again");
    Expect(std::strcmp(reinterpret_cast<char*>(bytes.data()), "Hello from the link") == 0,
           "what was written is read again");
    std::vector<std::byte> large(32492);
    Expect_Result(link.Read(0, large), 0, "the largest read");
    Expect(large[0x3308] == std::byte{7}, "the largest read brings its bytes");

    Link second;
    Expect_Result(second.Open(), 5, "a second link of the process, whose block has the same name");
    Expect_Result(link.Read(0x3380, bytes), 0, "the first link after that");
    link.fsuipc.IPC_Close();
    Expect(::GlobalFindAtomA(Block_Name().c_str()) == 0, "no atom is left behind");
    Expect_Result(second.Open(), 0, "the opening after what was in its way has gone");
}

void Lose_The_Simulator() {
    Link link;
    std::array<std::byte, 4> version{};
    std::optional<Simulator> simulator(std::in_place);
    Expect_Result(link.Open(), 0, "opening");
    simulator.reset();
    Expect(!link.transport.Peer_Exists(), "the window is gone");
    Expect_Result(link.Read(0x3308, version), 12, "a window that vanished");
    simulator.emplace();
    Expect_Result(link.Read(0x3308, version), 0, "a simulator that came again");
    Expect(version[0] == std::byte{7}, "it answers");
}

}  // namespace
}  // namespace norvane::test

int main() {
    using namespace norvane::test;
    Open_All();
    Exchange();
    Lose_The_Simulator();
    std::printf("%s\n", faults == 0 ? "test-transport: passed" : "test-transport: FAILED");
    return faults == 0 ? 0 : 1;
}
