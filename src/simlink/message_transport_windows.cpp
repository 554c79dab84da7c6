#include "simlink/message_transport.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "simlink/mod_fsuipc.h"

namespace norvane {

namespace {

constexpr std::array window_classes{"UIPCMAIN", "FS98MAIN"};
constexpr const char* message_name = "FSASMLIB:IPC";
/// Counts a process's tries to find a free name; one link a process needs one name.
constexpr unsigned name_counter = 1;
constexpr std::size_t shared_size = 32768;

/// The message's name, the process and the counter, which always fit.
std::array<char, 24> Block_Name() {
    std::array<char, 24> name{};
    (void)std::snprintf(name.data(), name.size(), "%s:%X:%X", message_name,
                        static_cast<unsigned>(::GetCurrentProcessId()), name_counter);
    return name;
}

}  // namespace

Message_Transport::Message_Transport(std::chrono::milliseconds longest_wait)
    : m_longest_wait(longest_wait) {}

Message_Transport::~Message_Transport() {
    Message_Transport::Close();
}

void Message_Transport::Find_Window() {
    m_window = nullptr;
    m_window_class.clear();
    for (const char* name : window_classes) {
        if (m_window != nullptr)
            return;
        m_window = ::FindWindowExA(nullptr, nullptr, name, nullptr);
        if (m_window != nullptr)
            m_window_class = name;
    }
}

Transport_Opening Message_Transport::Open() {
    Close();
    Find_Window();
    if (m_window == nullptr)
        return {ipc_result::no_simulator, false};
    m_message = ::RegisterWindowMessageA(message_name);
    const int result = m_message == 0 ? ipc_result::no_message : Share_Block();
    const bool fallback = m_window_class != window_classes.front();
    if (result != ipc_result::okay)
        Close();
    return {result, fallback};
}

int Message_Transport::Share_Block() {
    const auto name = Block_Name();
    m_atom = ::GlobalAddAtomA(name.data());
    if (m_atom == 0)
        return ipc_result::no_atom;
    m_mapping = ::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, shared_size,
                                     name.data());
    // A block of that name that is there already is someone else's.
    if (m_mapping == nullptr || ::GetLastError() == ERROR_ALREADY_EXISTS)
        return ipc_result::no_mapping;
    m_view = static_cast<std::byte*>(::MapViewOfFile(m_mapping, FILE_MAP_WRITE, 0, 0, 0));
    return m_view == nullptr ? ipc_result::no_view : ipc_result::okay;
}

Delivery Message_Transport::Deliver(std::span<std::byte> block, std::chrono::milliseconds at_most) {
    m_failure = 0;
    if (m_view != nullptr && m_window == nullptr)
        Find_Window();
    if (m_view == nullptr || m_window == nullptr || block.size() > shared_size) {
        m_failure = ERROR_INVALID_WINDOW_HANDLE;
        return {Delivery_Outcome::failed, 0};
    }
    std::copy(block.begin(), block.end(), m_view);
    const auto wait = static_cast<UINT>(std::min(at_most, m_longest_wait).count());
    DWORD_PTR answer = 0;
    ::SetLastError(ERROR_SUCCESS);
    if (::SendMessageTimeoutA(static_cast<HWND>(m_window), m_message, m_atom, 0, SMTO_BLOCK, wait,
                              &answer) != 0) {
        std::copy_n(m_view, block.size(), block.begin());
        return {Delivery_Outcome::answered, static_cast<std::uint32_t>(answer)};
    }
    // Older systems give no error for a time-out, newer ones one of its own.
    const DWORD failure = ::GetLastError();
    if (failure == ERROR_SUCCESS || failure == ERROR_TIMEOUT)
        return {Delivery_Outcome::silent, 0};
    m_failure = failure;
    if (!Peer_Exists())
        m_window = nullptr;
    return {Delivery_Outcome::failed, 0};
}

bool Message_Transport::Peer_Exists() const {
    return m_window != nullptr && ::IsWindow(static_cast<HWND>(m_window)) != 0;
}

void Message_Transport::Close() {
    m_window = nullptr;
    m_window_class.clear();
    m_message = 0;
    if (m_atom != 0)
        ::GlobalDeleteAtom(m_atom);
    m_atom = 0;
    if (m_view != nullptr)
        ::UnmapViewOfFile(m_view);
    m_view = nullptr;
    if (m_mapping != nullptr)
        ::CloseHandle(m_mapping);
    m_mapping = nullptr;
}

}  // namespace norvane
