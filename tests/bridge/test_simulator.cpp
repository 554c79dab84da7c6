// test-simulator: has the window of a simulator with FSUIPC, and answers its message from an offset
// area or from a simulator at the other end of the Norvane link. Prints "ready" when the window is
// there, then "block NAME" for each block it meets.

#include <windows.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>

#include "simlink/offset_area.h"
#include "simlink/request_block.h"
#include "simlink/socket_transport.h"

namespace {

using namespace norvane;

constexpr std::size_t shared_size = 32768;

struct Behaviour {
    std::string window_class = "UIPCMAIN";
    std::string from;
    std::uint32_t fsuipc_version = 0x37500000;
    std::uint32_t simulator_version = 0xFADE0007;
    bool refuse = false;
    int hang_ms = 0;
    int vanish_at = 0;
};

class Simulator {
  public:
    explicit Simulator(const Behaviour& behaviour) : m_behaviour(behaviour) {
        std::memcpy(m_area.Bytes(0x3304, 4).data(), &behaviour.fsuipc_version, 4);
        std::memcpy(m_area.Bytes(0x3308, 4).data(), &behaviour.simulator_version, 4);
        if (!behaviour.from.empty())
            m_beyond = std::make_unique<Socket_Transport>(Parse_Link_Address(behaviour.from));
    }

    LRESULT Answer(ATOM atom) {
        if (++m_messages == m_behaviour.vanish_at)
            ::TerminateProcess(::GetCurrentProcess(), 0);
        ::Sleep(static_cast<DWORD>(m_behaviour.hang_ms));
        std::string name(256, '\0');
        name.resize(::GlobalGetAtomNameA(atom, name.data(), static_cast<int>(name.size())));
        if (m_names.insert(name).second) {
            std::printf("block %s\n", name.c_str());
            std::fflush(stdout);
        }
        const HANDLE mapping = ::OpenFileMappingA(FILE_MAP_WRITE, FALSE, name.c_str());
        if (mapping == nullptr)
            return 0;
        void* const view = ::MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0);
        const bool good = view != nullptr && Process({static_cast<std::byte*>(view), shared_size});
        ::UnmapViewOfFile(view);
        ::CloseHandle(mapping);
        return good && !m_behaviour.refuse ? 1 : 0;
    }

  private:
    bool Process(std::span<std::byte> shared) {
        Record_Walk walk(shared);
        std::size_t length = end_record_size;
        while (walk.Next())
            length = walk.Record().data_place + walk.Record().size + end_record_size;
        const auto block = shared.first(length);
        if (m_beyond == nullptr)
            return m_area.Process(block);
        return m_beyond->Deliver(block, std::chrono::seconds(10)).answer == 1;
    }

    Behaviour m_behaviour;
    Offset_Area m_area;
    std::unique_ptr<Socket_Transport> m_beyond;
    std::set<std::string> m_names;
    int m_messages = 0;
};

UINT the_message = 0;

LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM word, LPARAM value) {
    auto* simulator = reinterpret_cast<Simulator*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
    if (simulator != nullptr && message == the_message)
        return simulator->Answer(static_cast<ATOM>(word));
    return ::DefWindowProcA(window, message, word, value);
}

}  // namespace

int main(int argc, char** argv) {
    Behaviour behaviour;
    CLI::App line("Stands in for a simulator with FSUIPC", "test-simulator");
    line.add_option("--class", behaviour.window_class);
    line.add_option("--from", behaviour.from);
    line.add_option("--fsuipc", behaviour.fsuipc_version);
    line.add_option("--simulator", behaviour.simulator_version);
    line.add_flag("--refuse", behaviour.refuse);
    line.add_option("--hang-ms", behaviour.hang_ms, "Before each answer");
    line.add_option("--vanish-at", behaviour.vanish_at, "The message it dies in");
    CLI11_PARSE(line, argc, argv);

    Simulator simulator(behaviour);
    the_message = ::RegisterWindowMessageA("FSASMLIB:IPC");
    WNDCLASSA description{};
    description.lpfnWndProc = Handle;
    description.hInstance = ::GetModuleHandleA(nullptr);
    description.lpszClassName = behaviour.window_class.c_str();
    ::RegisterClassA(&description);
    const HWND window =
        ::CreateWindowA(behaviour.window_class.c_str(), "simulator", WS_OVERLAPPED, 0, 0, 10, 10,
                        nullptr, nullptr, description.hInstance, nullptr);
    if (window == nullptr) {
        std::fprintf(stderr, "no window: system error %lu\n", ::GetLastError());
        return 1;
    }
    ::SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&simulator));
    std::printf("ready\n");
    std::fflush(stdout);
    MSG message{};
    while (::GetMessageA(&message, nullptr, 0, 0) > 0)
        ::DispatchMessageA(&message);
    return 0;
}
