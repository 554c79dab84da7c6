#include <gtest/gtest.h>

#include <cstring>

#include "common/run_error.h"
#include "common/system_clock.h"
#include "simlink/link_peers.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/socket_transport.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace test;

Link_Address Any_Port() {
    return Parse_Link_Address("127.0.0.1:0");
}

/// A block with one read of `size` bytes at `offset`.
std::vector<std::byte> Read_Block(std::uint32_t offset, std::uint32_t size) {
    std::vector<std::byte> block(read_header_size + size + end_record_size);
    Store_U32(block, 0, record_identifier::read);
    Store_U32(block, 4, offset);
    Store_U32(block, 8, size);
    Store_U32(block, 12, 1);
    return block;
}

std::uint32_t Value_In(const std::vector<std::byte>& block) {
    return Load_U32(block, read_header_size);
}

TEST(Socket_Link, Both_Kinds_Of_Address_Carry_A_Whole_Session) {
    const Socket_Directory directory;
    for (const Link_Address& listen : {directory.Address(), Any_Port()}) {
        Running_Server running(listen);
        running.area.Set(Variable::altitude_ft, 8202);
        Socket_Transport transport(running.server.Address());
        System_Clock clock;
        modFSUIPC link(transport, clock);
        int result = 0;
        ASSERT_TRUE(link.IPC_Open(7, result)) << listen.Text();
        std::int32_t metres = 0;
        std::vector<std::byte> much(32000);
        EXPECT_TRUE(link.IPC_Read(0x0574, 4, &metres, result));
        EXPECT_TRUE(link.IPC_Process(result));
        EXPECT_EQ(metres, 2500);
        EXPECT_TRUE(link.IPC_Write(0x4000, 32000, much.data(), result));
        EXPECT_TRUE(link.IPC_Process(result)) << "frames of any size up to the block's";
        EXPECT_TRUE(link.IPC_Read(0xFFFF, 2, nullptr, result));
        EXPECT_FALSE(link.IPC_Process(result));
        EXPECT_EQ(result, ipc_result::bad_data);
    }
    EXPECT_FALSE(std::filesystem::exists(directory.Address().socket_file));
}

TEST(Socket_Link, Nobody_There_Is_No_Simulator) {
    const Socket_Directory directory;
    for (const std::string& address : {directory.Address().Text(), std::string("127.0.0.1:1"),
                                       std::string("no.host.invalid:1")}) {
        Socket_Transport transport(Parse_Link_Address(address));
        EXPECT_EQ(transport.Open().result, ipc_result::no_simulator) << address;
        auto block = Read_Block(0x3304, 4);
        EXPECT_EQ(transport.Deliver(block, 100ms).outcome, Delivery_Outcome::failed) << address;
    }
}

/// What becomes of one delivery when the peer acts so.
Delivery Deliver_To(const Scripted_Peer::Act& act, std::vector<std::byte>& block) {
    const Socket_Directory directory;
    Scripted_Peer peer(directory.Address(), {act});
    Socket_Transport transport(directory.Address());
    EXPECT_EQ(transport.Open().result, ipc_result::okay);
    return transport.Deliver(block, 100ms);
}

TEST(Socket_Link, A_Window_Repaints_While_A_Simulator_Is_Silent_Until_Nobody_Waits) {
    const Socket_Directory directory;
    Scripted_Peer peer(directory.Address(), {[](int socket) {
                           for (int request = 0; request < 3; ++request)
                               (void)Receive_Request(socket);
                       }});
    int repaints = 0;
    int enough = 1000;
    Socket_Transport transport(directory.Address(), 2s, [&] { return ++repaints < enough; });
    ASSERT_EQ(transport.Open().result, ipc_result::okay);
    auto block = Read_Block(0x3304, 4);
    EXPECT_EQ(transport.Deliver(block, 300ms).outcome, Delivery_Outcome::silent);
    EXPECT_GE(repaints, 1);
    enough = repaints + 2;
    EXPECT_EQ(transport.Deliver(block, 30s).outcome, Delivery_Outcome::silent);
    EXPECT_EQ(repaints, enough);
}

TEST(Socket_Link, Misbehaving_Peers_Fail_Or_Are_Silent) {
    const auto wait_for_end = [](int peer) { (void)Receive_Request(peer); };
    const struct {
        const char* fault;
        Scripted_Peer::Act act;
        Delivery_Outcome expected;
    } cases[] = {
        {"closes at once", [](int) {}, Delivery_Outcome::failed},
        {"closes instead of answering", [](int peer) { Receive_Request(peer); },
         Delivery_Outcome::failed},
        {"resets the connection",
         [](int peer) {
             pollfd entry{peer, POLLIN, 0};
             ::poll(&entry, 1, 10'000);
         },
         Delivery_Outcome::failed},
        {"says nothing",
         [&](int peer) {
             Receive_Request(peer);
             wait_for_end(peer);
         },
         Delivery_Outcome::silent},
        {"closes in the middle of an answer",
         [](int peer) {
             const auto request = Receive_Request(peer);
             const auto frame = Answer_Frame(request.sequence, 1, request.records);
             Send_Bytes(peer, std::span(frame).first(frame.size() - 1));
         },
         Delivery_Outcome::failed},
        {"sends half an answer and stops",
         [&](int peer) {
             const auto request = Receive_Request(peer);
             const auto frame = Answer_Frame(request.sequence, 1, request.records);
             Send_Bytes(peer, std::span(frame).first(7));
             wait_for_end(peer);
         },
         Delivery_Outcome::silent},
        {"announces more than a block",
         [&](int peer) {
             const auto request = Receive_Request(peer);
             auto frame = Answer_Frame(request.sequence, 1, request.records);
             Store_U32(frame, 8, 32513);
             Send_Bytes(peer, frame);
             wait_for_end(peer);
         },
         Delivery_Outcome::failed},
        {"sends text",
         [&](int peer) {
             Receive_Request(peer);
             const std::string text = "HTTP/1.1 400 Bad Request\r\n\r\n";
             Send_Bytes(peer, std::as_bytes(std::span(text)));
             wait_for_end(peer);
         },
         Delivery_Outcome::failed},
        {"sends stale answers only",
         [&](int peer) {
             const auto request = Receive_Request(peer);
             for (std::uint32_t i = 1; i < 100; ++i)
                 Send_Bytes(peer, Answer_Frame(request.sequence + i, 1, request.records));
             wait_for_end(peer);
         },
         Delivery_Outcome::silent},
    };
    for (const auto& c : cases) {
        auto block = Read_Block(0x3304, 4);
        const auto sent = block;
        EXPECT_EQ(Deliver_To(c.act, block).outcome, c.expected) << c.fault;
        EXPECT_EQ(block, sent) << c.fault;
    }
}

TEST(Socket_Link, An_Answer_Of_Another_Length_Or_A_Refusal_Leaves_The_Block_Alone) {
    const struct {
        std::uint32_t answer;
        std::size_t length;
    } cases[] = {{1, 0}, {1, 23}, {1, 25}, {1, 32512}, {0, 24}, {0, 0}, {9, 24}};
    for (const auto& c : cases) {
        auto block = Read_Block(0x3304, 4);
        const auto sent = block;
        const auto act = [&](int peer) {
            const std::vector<std::byte> records(c.length, std::byte{0xAA});
            Send_Bytes(peer, Answer_Frame(Receive_Request(peer).sequence, c.answer, records));
            (void)Receive_Request(peer);
        };
        const Delivery delivery = Deliver_To(act, block);
        EXPECT_EQ(delivery.outcome, Delivery_Outcome::answered);
        EXPECT_NE(delivery.answer, 1U) << c.length;
        EXPECT_EQ(block, sent) << c.length;
    }
}

TEST(Socket_Link, A_Late_Answer_Is_Not_Taken_For_The_Next_One) {
    const Socket_Directory directory;
    const auto act = [](int peer) {
        auto first = Receive_Request(peer);
        auto second = Receive_Request(peer);
        Store_U32(first.records, read_header_size, 111);
        Store_U32(second.records, read_header_size, 222);
        auto both = Answer_Frame(first.sequence, 1, first.records);
        const auto good = Answer_Frame(second.sequence, 1, second.records);
        both.insert(both.end(), good.begin(), good.end());
        // In pieces that fall in the middle of heads and records.
        for (const std::byte byte : both)
            Send_Bytes(peer, std::span(&byte, 1));
    };
    Scripted_Peer peer(directory.Address(), {act});
    Socket_Transport transport(directory.Address());
    auto block = Read_Block(0x0574, 4);
    EXPECT_EQ(transport.Deliver(block, 50ms).outcome, Delivery_Outcome::silent);
    EXPECT_EQ(transport.Deliver(block, 5s).outcome, Delivery_Outcome::answered);
    EXPECT_EQ(Value_In(block), 222U);
}

TEST(Socket_Link, A_Peer_That_Is_Gone_Is_Connected_To_Anew) {
    const Socket_Directory directory;
    const auto answer = [](int peer) {
        auto request = Receive_Request(peer);
        Store_U32(request.records, read_header_size, 333);
        Send_Bytes(peer, Answer_Frame(request.sequence, 1, request.records));
        (void)Receive_Request(peer);
    };
    Scripted_Peer peer(directory.Address(), {[](int) {}, answer});
    Socket_Transport transport(directory.Address());
    ASSERT_EQ(transport.Open().result, ipc_result::okay);
    auto block = Read_Block(0x0574, 4);
    EXPECT_EQ(transport.Deliver(block, 5s).outcome, Delivery_Outcome::failed);
    EXPECT_EQ(transport.Deliver(block, 5s).outcome, Delivery_Outcome::answered);
    EXPECT_EQ(Value_In(block), 333U);
    EXPECT_EQ(peer.connections, 2);
}

TEST(Socket_Link, A_Restarted_Simulator_Is_Found_Within_One_Exchange) {
    const Socket_Directory directory;
    System_Clock clock;
    Socket_Transport transport(directory.Address());
    modFSUIPC link(transport, clock);
    int result = 0;
    std::uint16_t value = 0;
    {
        const Running_Server first(directory.Address());
        ASSERT_TRUE(link.IPC_Open(0, result));
    }
    std::thread restart([&] {
        std::this_thread::sleep_for(250ms);
        Running_Server second(directory.Address());
        std::this_thread::sleep_for(1s);
    });
    EXPECT_TRUE(link.IPC_Read(0x3308, 2, &value, result));
    EXPECT_TRUE(link.IPC_Process(result));
    EXPECT_EQ(value, 7);
    restart.join();
    EXPECT_TRUE(link.IPC_Read(0x3308, 2, &value, result));
    EXPECT_FALSE(link.IPC_Process(result));
    EXPECT_EQ(result, ipc_result::send_failed) << "refused connections are no silence";
}

TEST(Link_Server_Clients, Who_Breaks_The_Framing_Is_Dropped_Alone) {
    Running_Server running(Any_Port());
    int failure = 0;
    const Link_Deadline deadline{std::chrono::steady_clock::now() + 5s};
    const Link_Socket honest = Connect_To(running.server.Address(), deadline, failure);
    const Link_Socket greedy = Connect_To(running.server.Address(), deadline, failure);
    ASSERT_TRUE(honest.Is_Open() && greedy.Is_Open());

    std::vector<std::byte> head(request_head_size);
    Store_U32(head, 4, 32513);
    Send_Bytes(greedy.Descriptor(), head);
    std::byte ignored{};
    EXPECT_FALSE(Receive_Exactly(greedy.Descriptor(), {&ignored, 1}));

    // An honest client that sends many requests at once, and one of no length.
    const auto block = Read_Block(0x3304, 4);
    std::vector<std::byte> stream;
    constexpr std::uint32_t count = 2000;
    for (std::uint32_t sequence = 0; sequence < count; ++sequence) {
        const auto& records = sequence == 1 ? std::vector<std::byte>() : block;
        Store_U32(head, 0, sequence);
        Store_U32(head, 4, static_cast<std::uint32_t>(records.size()));
        stream.insert(stream.end(), head.begin(), head.end());
        stream.insert(stream.end(), records.begin(), records.end());
    }
    std::thread sender([&] {
        std::span<const std::byte> rest = stream;
        while (!rest.empty() && Wait_For(honest, POLLOUT, deadline)) {
            const auto sent = ::send(honest.Descriptor(), rest.data(), rest.size(), MSG_NOSIGNAL);
            rest = rest.subspan(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
        }
    });
    for (std::uint32_t sequence = 0; sequence < count; ++sequence) {
        std::vector<std::byte> answer(answer_head_size);
        ASSERT_TRUE(Receive_Exactly(honest.Descriptor(), answer));
        EXPECT_EQ(Load_U32(answer, 0), sequence);
        EXPECT_EQ(Load_U32(answer, 4), sequence == 1 ? 0U : 1U);
        std::vector<std::byte> records(Load_U32(answer, 8));
        ASSERT_TRUE(Receive_Exactly(honest.Descriptor(), records));
    }
    sender.join();
}

TEST(Link_Server_Clients, Meet_What_Stands_Behind_The_Server) {
    std::vector<Delivery> behind{{Delivery_Outcome::silent, 0},
                                 {Delivery_Outcome::answered, 7},
                                 {Delivery_Outcome::failed, 0},
                                 {Delivery_Outcome::answered, 1}};
    std::size_t asked = 0;
    Link_Server server(Any_Port(), [&](std::span<std::byte> records) {
        records[16] = std::byte{0x2A};
        return behind.at(asked++);
    });
    std::jthread serving([&](const std::stop_token& stop) {
        while (!stop.stop_requested())
            server.Serve(20ms);
    });
    Socket_Transport client(server.Address());
    ASSERT_EQ(client.Open().result, ipc_result::okay);
    auto block = Read_Block(0x3304, 4);
    EXPECT_EQ(client.Deliver(block, 200ms).outcome, Delivery_Outcome::silent);
    EXPECT_EQ(client.Deliver(block, 2s).answer, 7U);
    EXPECT_EQ(block[16], std::byte{0}) << "what was refused brings nothing back";
    EXPECT_EQ(client.Deliver(block, 2s).outcome, Delivery_Outcome::failed);
    EXPECT_EQ(client.Deliver(block, 2s).answer, 1U) << "the next one connects anew";
    EXPECT_EQ(block[16], std::byte{0x2A});
}

TEST(Link_Server_Files, Only_What_A_Dead_Server_Left_Is_Replaced) {
    const Socket_Directory directory;
    const auto& file = directory.Address().socket_file;
    Offset_Area area;
    { const Link_Socket killed = Listen_At(directory.Address()); }
    ASSERT_TRUE(std::filesystem::exists(file)) << "nobody removed it";
    {
        const Link_Server server(directory.Address(), area);
        try {
            const Link_Server second(directory.Address(), area);
            ADD_FAILURE() << "two servers at one address";
        } catch (const Run_Error& error) {
            EXPECT_NE(error.Description().find("another program listens there"), std::string::npos);
        }
        // Someone else's socket in our place is not ours to remove.
        std::filesystem::rename(file, directory.path / "old");
        (void)Listen_At(directory.Address());
    }
    EXPECT_TRUE(std::filesystem::exists(file));
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_THROW(const Link_Server server(directory.Address(), area), Run_Error);
    EXPECT_TRUE(std::filesystem::exists(file));

    const Link_Server first(Any_Port(), area);
    EXPECT_THROW(const Link_Server second(first.Address(), area), Run_Error);
    EXPECT_THROW(const Link_Server server(Parse_Link_Address("no.host.invalid:1"), area),
                 Run_Error);
}

TEST(Link_Addresses, Texts_Are_Read_And_Written) {
    for (const char* good : {"unix:/run/norvane", "unix:relative", "127.0.0.1:8338", "sim.local:1",
                             "[::1]:65535", "host:0"})
        EXPECT_EQ(Parse_Link_Address(good).Text(), good);
    EXPECT_EQ(Parse_Link_Address("[::1]:80").host, "::1");
    EXPECT_TRUE(Parse_Link_Address("unix:a:1").Is_Unix());

    for (const std::string bad : {"", "8338", "unix:", "host:", ":8338", "host:65536", "host:-1",
                                  "host:12x", "::1:80", "[]:80", "/run/norvane"})
        EXPECT_THROW((void)Parse_Link_Address(bad), Run_Error) << bad;
    EXPECT_THROW((void)Parse_Link_Address("unix:/" + std::string(107, 'x')), Run_Error);
    EXPECT_EQ(Parse_Link_Address("unix:/" + std::string(106, 'x')).socket_file.string().size(),
              107U);
    EXPECT_THROW((void)Parse_Link_Address(std::string_view("unix:/a\0b", 9)), Run_Error);
}

}  // namespace
}  // namespace norvane
