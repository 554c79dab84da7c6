#pragma once
// The client side of the simulator link: a block of queued read and write requests, sent through a
// Transport and walked when it comes back. One per process, owned by the program and shared by
// reference. "Offset" is an address in the simulator's offset area.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simlink/request_block.h"
#include "simlink/transport.h"

namespace norvane {

class Clock;

/// Result codes of the link; `modFSUIPC::IPC_ErrorText` gives their texts.
namespace ipc_result {
inline constexpr int okay = 0;
inline constexpr int open = 1;
inline constexpr int no_simulator = 2;
inline constexpr int no_message = 3;
inline constexpr int no_atom = 4;
inline constexpr int no_mapping = 5;
inline constexpr int no_view = 6;
inline constexpr int wrong_fsuipc = 7;
inline constexpr int wrong_simulator = 8;
inline constexpr int not_open = 9;
inline constexpr int nothing_queued = 10;
inline constexpr int timed_out = 11;
inline constexpr int send_failed = 12;
inline constexpr int bad_data = 13;
inline constexpr int wide_client = 14;
inline constexpr int block_full = 15;
}  // namespace ipc_result

class modFSUIPC {
  public:
    static constexpr std::size_t block_limit = request_block_limit;

    /// Closed, versions zero.
    modFSUIPC(Transport& transport, Clock& clock);
    ~modFSUIPC();
    modFSUIPC(const modFSUIPC&) = delete;
    modFSUIPC& operator=(const modFSUIPC&) = delete;

    /// `requested_version` 0 takes any simulator, else only the one of that number. An open link
    /// gives `ipc_result::open` and stays as it is.
    bool IPC_Open(int requested_version, int& result);
    /// Queues a read of `size` bytes; `destination` (null: discard) is filled by `IPC_Process` and
    /// must live until then.
    bool IPC_Read(std::uint32_t offset, std::uint32_t size, void* destination, int& result);
    bool IPC_Write(std::uint32_t offset, std::uint32_t size, const void* source, int& result);
    /// Queues the text's first `size` bytes; a shorter text is filled up with NUL bytes.
    bool IPC_WriteString(std::uint32_t offset, std::uint32_t size, std::string_view text,
                         int& result);
    /// Sends what is queued, waits for the answer (2 s a try, 11 tries, 100 ms between them) and
    /// fills the destinations. An answer that was refused, or whose records are not those that were
    /// sent, gives `ipc_result::bad_data` and fills none. What was queued is gone either way.
    bool IPC_Process(int& result);
    /// As `IPC_Process` with a single try: for what a flight does not depend on.
    bool IPC_Process_Once(int& result);
    void IPC_Close();
    [[nodiscard]] bool Is_Open() const { return m_open; }

    /// The code's fixed text; a code outside the table gives a text that names the number.
    [[nodiscard]] static std::string IPC_ErrorText(int result);
    /// What the pilot can check on this system when the link failed with that fixed text, the
    /// address that was tried among it; empty for a failure that the pilot can do nothing about.
    [[nodiscard]] std::string What_To_Check(std::string_view error_text) const;
    /// Name of the connected simulator; version 9 and above share the layout and the name of "FSX".
    [[nodiscard]] std::string IPC_SimName() const;
    /// As "3.750", with a letter for the low byte when it has one.
    [[nodiscard]] std::string IPC_VersionText() const;

  private:
    /// A queued record as it was sent, against which the answer is held.
    struct Request {
        std::uint32_t identifier = 0;
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
        void* destination = nullptr;
    };

    /// Queues the record's header; its data follows at the place that is returned, null when the
    /// result tells why not.
    std::byte* Queue(const Request& request, int& result);
    bool Read_Versions(int& result);
    bool Accept_Versions(int requested_version, bool fallback, int& result);
    bool Process(int tries, int& result);
    bool Send(std::span<std::byte> block, int tries, int& result);
    /// False, with nothing filled, when the answer's records are not those that were sent.
    [[nodiscard]] bool Fill_Destinations(std::span<const std::byte> block) const;
    void Clear_Queue();

    Transport& m_transport;
    Clock& m_clock;
    std::array<std::byte, 32768> m_block{};
    std::size_t m_next = 0;
    /// The queued records. A read carries its place here, counted from 1, as destination token.
    std::vector<Request> m_requests;
    bool m_open = false;
    std::uint32_t m_fsuipc_version = 0;
    std::uint32_t m_simulator_version = 0;
};

}  // namespace norvane
