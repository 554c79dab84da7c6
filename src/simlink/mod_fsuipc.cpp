#include "simlink/mod_fsuipc.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <utility>

#include "common/services.h"
#include "simlink/catalogue.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

constexpr auto send_time_out = 2000ms;
constexpr auto pause_between_tries = 100ms;
constexpr int send_tries = 11;
constexpr int version_tries = 5;
constexpr std::uint32_t oldest_fsuipc = 0x19980005;
constexpr std::uint16_t our_library_version = 0;

/// The place is the result code.
constexpr auto error_texts = std::to_array<std::string_view>({
    "Okay",
    "Open",
    "Unable to connect to FSUIPC.  Possible causes:\r\n"
    "1) Flight Simulator may not be running\r\n"
    "2) The FSUIPC.DLL may not be installed in ..\\Flight Simulator\\Modules.",
    "Failed to Register common message with Windows",
    "Failed to create Atom for mapping filename",
    "Failed to create a file mapping object",
    "Failed to open a view to the file map",
    "Incorrect version of FSUIPC, or not FSUIPC",
    "Sim is not version requested",
    "Call cannot execute, link not Open",
    "Call cannot execute: no requests accumulated",
    "IPC timed out all retries",
    "IPC sendmessage failed all retries",
    "IPC request contains bad data",
    "Maybe running on WideClient, but FS not running on Server, or wrong FSUIPC",
    "Read or Write request cannot be added, memory for Process is full",
});

/// Failures for which there is nobody at the address, and for which the wrong one is there.
constexpr std::array nobody_there = {ipc_result::no_simulator, ipc_result::timed_out,
                                     ipc_result::send_failed};
constexpr std::array other_there = {ipc_result::wrong_fsuipc, ipc_result::wrong_simulator,
                                    ipc_result::bad_data, ipc_result::wide_client};

constexpr std::string_view check_presence =
    "Please check:\r\n"
    "1) The simulator is running, with its flight loaded.\r\n"
    "2) What connects it is running too: \"norvane-sim flightgear\" for FlightGear, "
    "\"norvane-bridge.exe\" for a simulator on Windows, under Wine or Proton.\r\n"
    "3) Both sides name the same address.\r\n"
    "Then try again.  The help tells more under \"The first flight\".";
constexpr std::string_view check_kind =
    "Something answers there, but not as Norvane expects it.  Please check that the simulator has "
    "loaded its flight, that no other program listens at this address, and that what connects the "
    "simulator is as new as Norvane.  Then try again.";

/// The place is the simulator's version number.
constexpr auto simulator_names = std::to_array<std::string_view>(
    {"Any", "FS98", "FS2000", "CFS2", "CFS1", "FLY", "FS2002", "FS2004", "FSX"});

}  // namespace

modFSUIPC::modFSUIPC(Transport& transport, Clock& clock) : m_transport(transport), m_clock(clock) {}

modFSUIPC::~modFSUIPC() {
    IPC_Close();
}

bool modFSUIPC::IPC_Open(int requested_version, int& result) {
    if (m_open) {
        result = ipc_result::open;
        return false;
    }
    m_fsuipc_version = 0;
    m_simulator_version = 0;
    Clear_Queue();
    const Transport_Opening opening = m_transport.Open();
    m_open = opening.result == ipc_result::okay;
    result = opening.result;
    bool good = m_open;
    for (int tried = 0; good && tried < version_tries; ++tried) {
        if (m_fsuipc_version != 0 && m_simulator_version != 0)
            break;
        good = Read_Versions(result);
        if (good)
            m_clock.Sleep(pause_between_tries);
    }
    good = good && Accept_Versions(requested_version, opening.fallback, result);
    if (!good)
        IPC_Close();
    return good;
}

bool modFSUIPC::Read_Versions(int& result) {
    return IPC_Read(Offset_Of(Variable::fsuipc_version), sizeof m_fsuipc_version, &m_fsuipc_version,
                    result) &&
           IPC_Read(Offset_Of(Variable::simulator_version), sizeof m_simulator_version,
                    &m_simulator_version, result) &&
           IPC_Write(Offset_Of(Variable::library_version), sizeof our_library_version,
                     &our_library_version, result) &&
           IPC_Process(result);
}

bool modFSUIPC::Accept_Versions(int requested_version, bool fallback, int& result) {
    if (m_fsuipc_version < oldest_fsuipc || m_simulator_version >> 16 != simulator_check_pattern) {
        result = fallback ? ipc_result::wide_client : ipc_result::wrong_fsuipc;
        return false;
    }
    m_simulator_version &= 0xFFFF;
    const bool wanted =
        requested_version == 0 || std::cmp_equal(requested_version, m_simulator_version);
    result = wanted ? ipc_result::okay : ipc_result::wrong_simulator;
    return wanted;
}

bool modFSUIPC::IPC_Read(std::uint32_t offset, std::uint32_t size, void* destination, int& result) {
    std::byte* const data = Queue({record_identifier::read, offset, size, destination}, result);
    if (data == nullptr)
        return false;
    std::fill_n(data, size, std::byte{0});
    return true;
}

bool modFSUIPC::IPC_Write(std::uint32_t offset, std::uint32_t size, const void* source,
                          int& result) {
    std::byte* const data = Queue({record_identifier::write, offset, size, nullptr}, result);
    if (data == nullptr)
        return false;
    if (size > 0)
        std::memcpy(data, source, size);
    return true;
}

bool modFSUIPC::IPC_WriteString(std::uint32_t offset, std::uint32_t size, std::string_view text,
                                int& result) {
    std::byte* const data = Queue({record_identifier::write, offset, size, nullptr}, result);
    if (data == nullptr)
        return false;
    Encode_Text(text, {data, size});
    return true;
}

std::byte* modFSUIPC::Queue(const Request& request, int& result) {
    if (!m_open) {
        result = ipc_result::not_open;
        return nullptr;
    }
    const bool read = request.identifier == record_identifier::read;
    const std::size_t header = read ? read_header_size : write_header_size;
    if (m_next + end_record_size + request.size + header > block_limit) {
        result = ipc_result::block_full;
        return nullptr;
    }
    m_requests.push_back(request);
    const auto record = std::span(m_block).subspan(m_next);
    Store_U32(record, 0, request.identifier);
    Store_U32(record, 4, request.offset);
    Store_U32(record, 8, request.size);
    if (read)
        Store_U32(record, 12, static_cast<std::uint32_t>(m_requests.size()));
    m_next += header + request.size;
    result = ipc_result::okay;
    return record.data() + header;
}

bool modFSUIPC::IPC_Process(int& result) {
    return Process(send_tries, result);
}

bool modFSUIPC::IPC_Process_Once(int& result) {
    return Process(1, result);
}

bool modFSUIPC::Process(int tries, int& result) {
    if (!m_open) {
        result = ipc_result::not_open;
        return false;
    }
    if (m_next == 0) {
        result = ipc_result::nothing_queued;
        return false;
    }
    Store_U32(m_block, m_next, record_identifier::end);
    const auto block = std::span(m_block).first(m_next + end_record_size);
    if (Send(block, tries, result) && !Fill_Destinations(block))
        result = ipc_result::bad_data;
    Clear_Queue();
    return result == ipc_result::okay;
}

bool modFSUIPC::Send(std::span<std::byte> block, int tries, int& result) {
    Delivery delivery = m_transport.Deliver(block, send_time_out);
    for (int tried = 1; delivery.outcome != Delivery_Outcome::answered && tried < tries &&
                        !m_transport.Is_Given_Up();
         ++tried) {
        m_clock.Sleep(pause_between_tries);
        delivery = m_transport.Deliver(block, send_time_out);
    }
    if (delivery.outcome == Delivery_Outcome::answered)
        result = delivery.answer == 1 ? ipc_result::okay : ipc_result::bad_data;
    else
        result = delivery.outcome == Delivery_Outcome::silent ? ipc_result::timed_out
                                                              : ipc_result::send_failed;
    return result == ipc_result::okay;
}

bool modFSUIPC::Fill_Destinations(std::span<const std::byte> block) const {
    // Nothing the other side could have changed is trusted: each record must stand where it was
    // sent, and destinations come from our own table.
    std::vector<std::span<const std::byte>> answers;
    Record_Walk walk(block);
    while (walk.Next()) {
        const Request_Record& record = walk.Record();
        const std::size_t place = answers.size();
        if (place >= m_requests.size())
            return false;
        const Request& sent = m_requests[place];
        const bool read = sent.identifier == record_identifier::read;
        if (record.identifier != sent.identifier || record.offset != sent.offset ||
            record.size != sent.size || (read && record.token != place + 1))
            return false;
        answers.push_back(block.subspan(record.data_place, record.size));
    }
    if (!walk.Ended_Whole() || answers.size() != m_requests.size())
        return false;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (m_requests[i].destination != nullptr && !answers[i].empty())
            std::memcpy(m_requests[i].destination, answers[i].data(), answers[i].size());
    }
    return true;
}

void modFSUIPC::Clear_Queue() {
    m_next = 0;
    m_requests.clear();
}

void modFSUIPC::IPC_Close() {
    Clear_Queue();
    m_open = false;
    m_transport.Close();
}

std::string modFSUIPC::IPC_ErrorText(int result) {
    if (result < 0 || std::cmp_greater_equal(result, error_texts.size()))
        return "Unknown result " + std::to_string(result) + " of the simulator link";
    return std::string(error_texts[static_cast<std::size_t>(result)]);
}

std::string modFSUIPC::What_To_Check(std::string_view error_text) const {
    const auto among = [&](const auto& results) {
        return std::any_of(results.begin(), results.end(), [&](int result) {
            return error_texts.at(static_cast<std::size_t>(result)) == error_text;
        });
    };
    const bool absent = among(nobody_there);
    if (!absent && !among(other_there))
        return {};
    const std::string where = m_transport.Where();
    const std::string tried = where.empty()
                                  ? std::string()
                                  : "Norvane looked for the simulator at " + where + ".\r\n\r\n";
    return tried + std::string(absent ? check_presence : check_kind);
}

std::string modFSUIPC::IPC_SimName() const {
    const std::uint32_t known = simulator_names.size() - 1;
    return std::string(simulator_names[std::min(m_simulator_version, known)]);
}

std::string modFSUIPC::IPC_VersionText() const {
    std::string text;
    double number = 0;
    double place_value = 1;
    for (unsigned shift = 28; shift >= 16; shift -= 4) {
        const std::uint32_t digit = m_fsuipc_version >> shift & 0xF;
        text += static_cast<char>('0' + digit);
        if (shift == 28)
            text += '.';
        number += digit * place_value;
        place_value /= 10;
    }
    const std::uint32_t letter = m_fsuipc_version & 0xFF;
    if (std::nearbyint(number) != 0 && letter != 0)
        text += static_cast<char>('a' + letter - 1);
    return text;
}

}  // namespace norvane
