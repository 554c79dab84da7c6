// The Norvane link over sockets: both of its ends, each with another side that misbehaves.

#include <gmock/gmock.h>

#include "common/run_error.h"
#include "simlink/link_peers.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/socket_transport.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using namespace test;
using testing::HasSubstr;
using Outcome = Delivery_Outcome;

/// For what does come about, however busy the computer is.
constexpr std::chrono::milliseconds patience = 60s;

Link_Address Any_Port() {
    return Parse_Link_Address("127.0.0.1:0");
}

/// A client whose waiting makes the server work.
Socket_Transport Client_Of(Link_Server& server) {
    return Socket_Transport(server.Address(), patience, [&] {
        server.Serve(0ms);
        return true;
    });
}

TEST(Link_Session, Both_Kinds_Of_Address_Carry_It) {
    const Socket_Directory directory;
    for (const Link_Address& listen : {directory.Address(), Any_Port()}) {
        Offset_Area area;
        Link_Server server(listen, area);
        Socket_Transport client = Client_Of(server);
        auto versions = Read_Block(0x3308, 4);
        EXPECT_EQ(client.Deliver(versions, patience).answer, 1U) << listen.Text();
        EXPECT_EQ(Load_U32(versions, read_header_size), 0xFADE0007);
        auto largest = Read_Block(0, 32492);
        EXPECT_EQ(client.Deliver(largest, patience).answer, 1U);
        auto beyond = Read_Block(0xFFFF, 2);
        EXPECT_EQ(client.Deliver(beyond, patience).answer, 0U);
    }
    EXPECT_FALSE(std::filesystem::exists(directory.Address().socket_file));
}

TEST(Link_Session, Clients_Meet_What_Stands_Behind_The_Server) {
    std::vector<Delivery> behind{
        {Outcome::silent, 0}, {Outcome::answered, 7}, {Outcome::failed, 0}, {Outcome::answered, 1}};
    std::size_t asked = 0;
    Link_Server server(Any_Port(), [&](std::span<std::byte> records) {
        records[16] = std::byte{0x2A};
        return behind.at(asked++);
    });
    Socket_Transport client = Client_Of(server);
    auto block = Read_Block(0x3304, 4);
    EXPECT_EQ(client.Deliver(block, 100ms).outcome, Outcome::silent);
    EXPECT_EQ(client.Deliver(block, patience).answer, 7U);
    EXPECT_EQ(block[16], std::byte{0}) << "what was refused brings nothing back";
    EXPECT_EQ(client.Deliver(block, patience).outcome, Outcome::failed);
    EXPECT_EQ(client.Deliver(block, patience).answer, 1U) << "the next one connects anew";
    EXPECT_EQ(block[16], std::byte{0x2A});
}

/// A client, and the other end of its connection, which acts while the client waits.
class Socket_Client : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(transport.Open().result, ipc_result::okay);
        peer = Accept_From(listener);
    }
    Outcome Deliver(std::function<void()> what, std::chrono::milliseconds at_most = patience) {
        act = std::move(what);
        last = transport.Deliver(block, at_most);
        return last.outcome;
    }
    Received_Frame Request() const { return {peer, 2}; }
    /// The answer to a request, with another value in its place.
    static std::vector<std::byte> Answer(const Received_Frame& request, std::uint32_t value) {
        auto records = request.records;
        Store_U32(records, read_header_size, value);
        return Frame({Load_U32(request.head, 0), 1}, records);
    }
    void Send(const std::vector<std::byte>& bytes) const { Send_Bytes(peer, bytes); }
    [[nodiscard]] std::uint32_t Value() const { return Load_U32(block, read_header_size); }

    Socket_Directory directory;
    Link_Socket listener = Listen_At(directory.Address());
    Link_Socket peer;
    std::function<void()> act;
    int waits_left = 10000;
    Socket_Transport transport{directory.Address(), patience, [this] {
                                   if (act)
                                       std::exchange(act, nullptr)();
                                   return --waits_left > 0;
                               }};
    std::vector<std::byte> block = Read_Block(0x3304, 4);
    Delivery last;
};

TEST_F(Socket_Client, Misbehaving_Peers_Fail_Are_Silent_Or_Refuse) {
    const struct {
        const char* fault;
        std::function<void()> what;
        Outcome expected;
    } cases[] = {
        {"says nothing", {}, Outcome::silent},
        {"closes its side", [&] { ::shutdown(peer.Descriptor(), SHUT_WR); }, Outcome::failed},
        {"resets the connection", [&] { peer.Close(); }, Outcome::failed},
        {"closes in the middle of an answer",
         [&] {
             const auto answer = Answer(Request(), 1);
             Send_Bytes(peer, std::span(answer).first(answer.size() - 1));
             peer.Close();
         },
         Outcome::failed},
        {"sends half an answer and stops",
         [&] { Send_Bytes(peer, std::span<const std::byte>(Answer(Request(), 1)).first(7)); },
         Outcome::silent},
        {"announces more than a block",
         [&] {
             auto answer = Answer(Request(), 1);
             Store_U32(answer, 8, 32513);
             Send(answer);
         },
         Outcome::failed},
        {"sends text", [&] { Send(Block().Data(30, 'x').bytes); }, Outcome::failed},
        {"sends stale answers only",
         [&] {
             const auto request = Request();
             for (std::uint32_t i = 1; i < 100; ++i)
                 Send(Frame({Load_U32(request.head, 0) + i, 1}, request.records));
         },
         Outcome::silent},
    };
    const auto sent = block;
    for (const auto& c : cases) {
        const auto at_most = c.expected == Outcome::silent ? 100ms : patience;
        EXPECT_EQ(Deliver(c.what, at_most), c.expected) << c.fault;
        EXPECT_EQ(block, sent) << c.fault;
        EXPECT_FALSE(transport.Has_Answered()) << c.fault;
        // Whatever it was, the next connection is a new one.
        SetUp();
    }
    const std::pair<std::uint32_t, std::size_t> refusals[] = {{1, 0},  {1, 23}, {1, 25}, {1, 32512},
                                                              {0, 24}, {0, 0},  {9, 24}};
    for (const auto& [answer, length] : refusals) {
        const auto refuse = [&, answer = answer, length = length] {
            Send(Frame({Load_U32(Request().head, 0), answer}, Block().Data(length).bytes));
        };
        EXPECT_EQ(Deliver(refuse), Outcome::answered);
        EXPECT_NE(last.answer, 1U) << "of a length of " << length;
        EXPECT_EQ(block, sent) << length;
    }
    EXPECT_TRUE(transport.Has_Answered());
}

TEST_F(Socket_Client, Repaints_While_A_Simulator_Is_Silent_Until_Nobody_Waits) {
    waits_left = 3;
    EXPECT_EQ(Deliver({}, 60s), Outcome::silent);
    EXPECT_EQ(waits_left, 0);
    EXPECT_TRUE(transport.Is_Given_Up());
}

TEST_F(Socket_Client, A_Late_Answer_Is_Not_Taken_For_The_Next_One) {
    EXPECT_EQ(Deliver({}, 10ms), Outcome::silent);
    const auto both = [&] {
        const auto late = Answer(Request(), 111);
        const auto good = Answer(Request(), 222);
        // In pieces that fall in the middle of heads and records.
        for (const auto& answer : {late, good})
            for (const std::byte byte : answer)
                Send({byte});
    };
    EXPECT_EQ(Deliver(both, patience), Outcome::answered);
    EXPECT_EQ(Value(), 222U);
}

TEST_F(Socket_Client, Connects_Anew_To_A_Peer_That_Was_Gone_And_To_Another_Address) {
    const auto answer = [&] {
        peer = Accept_From(listener);
        Send(Answer(Request(), 333));
    };
    peer.Close();
    EXPECT_EQ(Deliver({}), Outcome::failed);
    EXPECT_EQ(Deliver(answer, patience), Outcome::answered);
    EXPECT_EQ(Value(), 333U);
    transport.Set_Address(directory.Address());
    EXPECT_EQ(Deliver([&] { Send(Answer(Request(), 444)); }, patience), Outcome::answered);
    EXPECT_EQ(Value(), 444U) << "the same address keeps its connection";
    const Link_Address other{directory.path / "other", "", 0};
    listener = Listen_At(other);
    transport.Set_Address(other);
    EXPECT_EQ(transport.Where(), other.Text());
    EXPECT_EQ(Deliver(answer, patience), Outcome::answered);
}

TEST_F(Socket_Client, After_Half_A_Frame_The_Next_One_Begins_A_New_Connection) {
    Link_Socket next;
    block = Read_Block(0, 32492);
    for (int i = 0; i < 200 && !next.Is_Open(); ++i) {
        EXPECT_EQ(Deliver({}, 1ms), Outcome::silent);
        next = Accept_From(listener);
    }
    ASSERT_TRUE(next.Is_Open()) << "the peer that reads nothing has room for ever";
    EXPECT_EQ(Received_Frame(next, 2).records, block);
}

TEST(Link_Server_Clients, Who_Breaks_The_Framing_Is_Dropped_Alone) {
    Offset_Area area;
    Link_Server server(Any_Port(), area);
    const Link_Deadline late{std::chrono::steady_clock::now() + patience};
    int failure = 0;
    const Link_Socket honest = Connect_To(server.Address(), late, failure);
    const Link_Socket greedy = Connect_To(server.Address(), late, failure);
    Send_Bytes(greedy, Block().Words({0, 32513}).bytes);
    // Many requests at once, one of them of no length, from a client that does not read.
    std::vector<std::byte> requests;
    std::vector<std::byte> expected;
    for (std::uint32_t sequence = 0; sequence < 500; ++sequence) {
        const auto records = sequence == 1 ? std::vector<std::byte>() : Read_Block(0x4000, 8000);
        const auto request = Frame({sequence}, records);
        const auto answer = Frame({sequence, sequence == 1 ? 0U : 1U}, records);
        requests.insert(requests.end(), request.begin(), request.end());
        expected.insert(expected.end(), answer.begin(), answer.end());
    }
    std::span<const std::byte> rest = requests;
    std::vector<std::byte> answers(expected.size());
    std::size_t got = 0;
    for (bool reads = false; got < answers.size();) {
        const auto sent = ::send(honest.Descriptor(), rest.data(), rest.size(), MSG_NOSIGNAL);
        rest = rest.subspan(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
        ASSERT_FALSE(server.Serve(0ms));
        reads = reads || sent < 0;
        if (reads)
            got += Receive_Ready(honest, std::span(answers).subspan(got));
    }
    EXPECT_TRUE(answers == expected);
    EXPECT_EQ(Receive_Bytes(greedy, 1).size(), 0U);
    EXPECT_EQ(server.Client_Count(), 1U);
}

TEST(Link_Server_Files, Only_What_A_Dead_Server_Left_Is_Replaced) {
    const Socket_Directory directory;
    const auto& file = directory.Address().socket_file;
    Offset_Area area;
    const auto refuses = [&](const Link_Address& address, const char* reason) {
        EXPECT_THAT([&] { Link_Server(address, area); },
                    testing::ThrowsMessage<Run_Error>(HasSubstr(reason)));
    };
    { const Link_Socket killed = Listen_At(directory.Address()); }
    ASSERT_TRUE(std::filesystem::exists(file)) << "nobody removed it";
    {
        const Link_Server server(directory.Address(), area);
        refuses(directory.Address(), "another program listens there");
        // Someone else's socket in our place is not ours to remove.
        std::filesystem::rename(file, directory.path / "old");
        (void)Listen_At(directory.Address());
    }
    EXPECT_TRUE(std::filesystem::exists(file));
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    refuses(directory.Address(), "is no socket");
    EXPECT_TRUE(std::filesystem::exists(file));

    const Link_Server first(Any_Port(), area);
    refuses(first.Address(), "in use");
    refuses(Parse_Link_Address("no.host.invalid:1"), "host is unknown");
}

TEST(Link_Addresses, Texts_Are_Read_And_Written) {
    const std::string longest = "unix:/" + std::string(106, 'x');
    for (const std::string& good : {"unix:/run/norvane"s, "unix:relative"s, "127.0.0.1:8338"s,
                                    "sim.local:1"s, "[::1]:65535"s, "host:0"s, longest}) {
        EXPECT_EQ(Link_Address_Fault(good), "");
        EXPECT_EQ(Parse_Link_Address(good).Text(), good);
    }
    EXPECT_EQ(Parse_Link_Address("[::1]:80").host, "::1");
    EXPECT_TRUE(Parse_Link_Address("unix:a:1").Is_Unix());
    const std::pair<std::string, const char*> bad[] = {
        {"", "neither"},        {"8338", "neither"},
        {"unix:", "missing"},   {longest + "x", "longer than 107 bytes"},
        {"host:", "port"},      {"host:65536", "port"},
        {"host:-1", "port"},    {"host:12x", "port"},
        {":8338", "host"},      {"[]:80", "host"},
        {"::1:80", "brackets"}, {"/run/norvane", "neither"},
        {"unix:/a\0b"s, "NUL"},
    };
    for (const auto& [text, fault] : bad)
        EXPECT_THAT(Link_Address_Fault(text), HasSubstr(fault)) << text;
}

}  // namespace
}  // namespace norvane
