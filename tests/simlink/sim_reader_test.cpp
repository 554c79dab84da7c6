#include "simlink/sim_reader.h"

#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"

namespace norvane {
namespace {

class Reader : public testing::Test {
  protected:
    void SetUp() override {
        int result = 0;
        ASSERT_TRUE(link.IPC_Open(0, result));
        area.on_read = [this](auto, auto) { ++reads; };
    }

    test::Virtual_Clock clock;
    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    Sim_Reader reader{link};
    int reads = 0;
};

TEST_F(Reader, Values_Come_Decoded_One_Exchange_Each) {
    area.Set(Variable::altitude_ft, 35000);
    area.Set(Variable::engine_fuel_flow_pph, 2500.5, 2);
    area.Set(Variable::total_weight_lbs, 150000.9);
    area.Set_Text(Variable::atc_identifier, "ABCDEFGHIJKL");
    EXPECT_EQ(reader.Read_Whole(Variable::altitude_ft), 35000);
    EXPECT_EQ(reader.Read(Variable::engine_fuel_flow_pph, 2), 2500.5);
    EXPECT_EQ(reader.Read_Whole(Variable::engine_fuel_flow_pph, 2), 2500);
    EXPECT_EQ(reader.Read_Whole(Variable::total_weight_lbs), 150000);
    EXPECT_EQ(reader.Read_Text(Variable::atc_identifier), "ABCDEFGHIJKL");
    EXPECT_EQ(reads, 5);
    EXPECT_EQ(reader.Read(Variable::aircraft_title), 0) << "a text is no number";
    EXPECT_FALSE(reader.Failed());
}

TEST_F(Reader, Fuel_Is_The_Sum_Of_Eleven_Tanks_Without_The_Broken_Ones) {
    for (std::size_t tank = 0; tank < tank_count; ++tank)
        area.Set_Tank(tank, 10, 100);
    EXPECT_NEAR(reader.Read_Fuel_Gallons(), 110, 0.001);
    EXPECT_EQ(reads, 22);
    area.Set_Tank(4, -10, 100);
    EXPECT_NEAR(reader.Read_Fuel_Gallons(), 100, 0.001);
}

TEST_F(Reader, After_A_Failed_Exchange_The_Step_Leaves_The_Link_Alone) {
    area.Set(Variable::altitude_ft, 35000);
    int deliveries = 0;
    transport.on_deliver = [&](auto) -> std::optional<Delivery> {
        return Delivery{Delivery_Outcome::answered, ++deliveries == 1 ? 0U : 1U};
    };
    EXPECT_EQ(reader.Read(Variable::altitude_ft), 0);
    ASSERT_TRUE(reader.Failed());
    EXPECT_TRUE(reader.Failed()->exchange);
    EXPECT_EQ(reader.Failed()->text, "IPC request contains bad data");
    EXPECT_EQ(reader.Read(Variable::latitude_deg), 0);
    EXPECT_EQ(reader.Read_Text(Variable::atc_airline), "");
    EXPECT_EQ(reader.Read_Fuel_Gallons(), 0);
    EXPECT_FALSE(reader.Write_Display("OUT", 8));
    EXPECT_EQ(deliveries, 1);
    EXPECT_EQ(reader.Failed()->text, "IPC request contains bad data");
    transport.on_deliver = nullptr;
    reader.Begin_Step();
    EXPECT_FALSE(reader.Failed());
    EXPECT_EQ(reader.Read(Variable::altitude_ft), 35000);
}

TEST_F(Reader, Half_The_Fuel_Is_No_Fuel) {
    area.Set_Tank(0, 10, 100);
    int deliveries = 0;
    transport.on_deliver = [&](auto) -> std::optional<Delivery> {
        if (++deliveries == 20)
            return Delivery{Delivery_Outcome::answered, 0};
        return std::nullopt;
    };
    EXPECT_EQ(reader.Read_Fuel_Gallons(), 0);
    EXPECT_TRUE(reader.Failed());
}

TEST_F(Reader, A_Closed_Link_Fails_While_Queueing) {
    link.IPC_Close();
    EXPECT_EQ(reader.Read_Whole(Variable::on_ground), 0);
    ASSERT_TRUE(reader.Failed());
    EXPECT_FALSE(reader.Failed()->exchange);
    EXPECT_EQ(reader.Failed()->text, "Call cannot execute, link not Open");
}

TEST_F(Reader, A_Shown_Line_Goes_Out_With_Its_Nul_And_Control_In_One_Exchange) {
    int deliveries = 0;
    transport.on_deliver = [&](auto) -> std::optional<Delivery> {
        ++deliveries;
        return std::nullopt;
    };
    std::uint32_t text_size = 0;
    area.on_write = [&](std::uint32_t offset, std::uint32_t size) {
        if (offset == 0x3380)
            text_size = size;
    };
    EXPECT_TRUE(reader.Write_Display("ACARS/ OUT 1405", -17));
    EXPECT_EQ(deliveries, 1);
    EXPECT_EQ(text_size, 16U);
    EXPECT_EQ(area.Get_Text(Variable::display_text), "ACARS/ OUT 1405");
    EXPECT_EQ(area.Get(Variable::display_control), -17);
}

TEST_F(Reader, A_Line_Beyond_The_Block_Is_Refused_And_Blocks_Nothing) {
    constexpr std::size_t longest = 32481;
    for (const std::size_t length : {longest, longest + 1, std::size_t{40000}}) {
        reader.Begin_Step();
        EXPECT_EQ(reader.Write_Display(std::string(length, 'x'), 8), length <= longest);
        reader.Begin_Step();
        EXPECT_EQ(reader.Read_Whole(Variable::simulator_version), 7);
    }
}

}  // namespace
}  // namespace norvane
