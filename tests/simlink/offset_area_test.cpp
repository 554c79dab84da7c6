#include "simlink/offset_area.h"

#include <gtest/gtest.h>

#include "simlink/link_peers.h"

namespace norvane {
namespace {

using test::Block;

TEST(Offset_Area_Requests, Malicious_Blocks_Are_Refused_And_Change_Nothing) {
    // A good write stands before the fault: it must not be carried out.
    const auto good = [] { return Block().Words({2, 0x4000, 4}).Data(4); };
    const struct {
        const char* fault = nullptr;
        Block block;
    } cases[] = {
        {"no record at all", Block()},
        {"no end record", good()},
        {"bytes behind the end record", good().Words({0}).Data(1)},
        {"a second end record", good().Words({0, 0})},
        {"half an end record", good().Data(3, 0)},
        {"an unknown identifier", good().Words({3, 0x10, 4, 0}).Data(4).Words({0})},
        {"a read one byte beyond the area", good().Words({1, 0xFFFD, 4, 0}).Data(4).Words({0})},
        {"a write at a great offset", good().Words({2, 0xFFFFFFFC, 8}).Data(8).Words({0})},
        {"a size beyond the block", good().Words({1, 0, 5, 0, 0})},
        {"a size that wraps around", good().Words({1, 0, 0xFFFFFFF0, 0, 0})},
        {"half a read header", good().Words({1, 0, 4})},
        {"half a write header", good().Words({2, 0})},
    };
    for (const auto& c : cases) {
        Offset_Area area;
        int called = 0;
        area.on_read = area.on_write = [&](auto, auto) { ++called; };
        auto bytes = c.block.bytes;
        EXPECT_FALSE(area.Process(bytes)) << c.fault;
        EXPECT_EQ(bytes, c.block.bytes) << c.fault;
        EXPECT_EQ(area.Bytes(0x4000, 1)[0], std::byte{0}) << c.fault;
        EXPECT_EQ(called, 0) << c.fault;
    }
}

TEST(Offset_Area_Requests, The_Last_Byte_And_Empty_Records_Are_Served_And_Told_In_Time) {
    Offset_Area area;
    std::vector<std::uint32_t> told;
    area.on_read = [&](std::uint32_t offset, std::uint32_t size) {
        told.insert(told.end(), {offset, size});
        area.Set(Variable::parking_brake, 1);
    };
    area.on_write = [&](std::uint32_t offset, std::uint32_t size) {
        told.insert(told.end(), {offset, size});
        EXPECT_EQ(area.Bytes(offset, 1)[0], std::byte{0x55});
    };
    auto block = Block()
                     .Words({2, 0xFFFF, 1})
                     .Data(1)
                     .Words({1, 0xFFFC, 4, 0xCAFE})
                     .Data(4, 0)
                     .Words({1, 0x0BC8, 2, 1})
                     .Data(2, 0)
                     .Words({1, 0x10000, 0, 1, 0})
                     .bytes;
    EXPECT_TRUE(area.Process(block));
    EXPECT_EQ(Load_U32(block, 25), 0xCAFEU) << "the token returns unread";
    EXPECT_EQ(Load_U32(block, 29), 0x55000000U);
    EXPECT_EQ(block[49], std::byte{1}) << "the change made at the read is in its answer";
    EXPECT_EQ(told, (std::vector<std::uint32_t>{0xFFFF, 1, 0xFFFC, 4, 0x0BC8, 2, 0x10000, 0}));
}

}  // namespace
}  // namespace norvane
