// Building a world file: what is taken from each kind of list, and what is passed over.

#include "worldtools/world_builder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <zlib.h>

#include "common/gzip_reader.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::string_view new_format =
    "I\r\n1000 Version\r\n\r\n"
    "1 13 1 0 KSFO San Francisco // Intl|x\r\n"
    "102 H1 37.0 -122.0 90 20 20 1 0 0 0 0\r\n"
    "100 60.96 1 1 0.00 1 2 1 10L 37.62872250 -122.39342127 0 262 3 0 0 1 28R 37.61351918 "
    "-122.35716907 0 103 3 2 1 1\r\n"
    "100 60.96 1 1 0.00 1 2 1 01L 1 1 0 262 3 0 0 1 19R 2 2 0 103 3 2 1 1\r\n"
    "110 2 0.25 0 Apron\r\n"
    "16 0 0 0 dlkb B\xF8mlo Sj\xF8haven\r\n"
    "101 30.48 0 19 -16.5 -179.99 01 -16.7 179.95\r\n"
    "1 20 0 0 LYZR Žabljak\r\n"
    "100 60.96 1 1\r\n"
    "100 60 1 1 0 1 2 1 10L 43.1 19.2 0 262 3 0 0 1 28R 43.1 19.2 0 103 3 2 1 1\r\n"
    "1 20 0 0 KSFO Again\r\n"
    "100 60 1 1 0 1 2 1 10L 3 9 0 262 3 0 0 1 28R 3 9 0 103 3 2 1 1\r\n"
    "1 20 0 0 NOPE Nothing but a name\r\n"
    "17 20 0 0 HELI [H] Hospital\r\n"
    "102 H1 -12.5 130.25 90 20 20 1 0 0 0 0\r\n"
    "1 high 0 0 BADE Bad\r\n"
    "102 H1 -12.5 130.25 90 20 20 1 0 0 0 0\r\n"
    "1 20 0 0 A|B Bad\r\n"
    "102 H1 -12.5 130.25 90 20 20 1 0 0 0 0\r\n"
    "what is this\r\n"
    "# a remark\r\n"
    "99\r\n";

class World_Building : public Test_World {
  protected:
    World_Builder Build(std::string_view source, Heliports heliports = Heliports::leave_out) {
        fs::create_directories(directory / "bin");
        return Build_World(Write("source", source), directory / "bin/fs9.wld", heliports);
    }
    std::string Built(std::string_view source) {
        Build(source);
        const std::string content = Read("bin/fs9.wld");
        return content.substr(content.find('\n') + 1);
    }
    std::string Packed(std::string_view content) {
        const auto file = directory / "packed";
        gzFile packed = gzopen(file.c_str(), "wb");
        gzwrite(packed, content.data(), static_cast<unsigned>(content.size()));
        gzclose(packed);
        return Read_File(file);
    }
};

/// How many were skipped for each reason, and the first line; of one reason after the other.
std::string Skips_Of(const World_Builder& world) {
    std::string skipped;
    for (std::size_t reason = 0; reason < skip_reason_count; ++reason) {
        const auto& [count, first_line] = world.Skips(static_cast<Skip_Reason>(reason));
        skipped += fmt::format("{}@{} ", count, first_line);
    }
    return skipped;
}

TEST_F(World_Building, Takes_airports_of_apt_dat_and_tells_what_it_skipped) {
    const std::string airports =
        "-16.600000|179.980000|0|DLKB|B\xF8mlo Sj\xF8haven\r\n"
        "37.621121|-122.375295|13|KSFO|San Francisco / Intl/x\r\n"
        "43.100000|19.200000|20|LYZR|\x8E"
        "abljak\r\n";
    EXPECT_EQ(Built(new_format), airports);
    EXPECT_EQ(Built(Packed(new_format)), airports) << "packed";
    EXPECT_EQ(Skips_Of(Build(new_format)), "3@12 0@0 1@21 1@16 0@0 0@0 1@17 1@14 ");
    EXPECT_EQ(Build(new_format, Heliports::take).Size(), 4U);
    EXPECT_THAT(Read("bin/fs9.wld"), HasSubstr("-12.500000|130.250000|20|HELI|"));
}

TEST_F(World_Building, Takes_the_old_format_without_its_taxiways) {
    EXPECT_EQ(Built("A\n810 Version\n\n1 38 1 0 PHTO Hilo Intl\n"
                    "10 19.7000 -155.0000 xxx 83.0 500 0.0 0.0 75 161\n"
                    "10 19.7100 -155.0100 H1x 83.0 500 0.0 0.0 75 161\n"
                    "10 19.7200 -155.0500 08x 93.0 9800 0.0 0.0 150 161\n99\n"),
              "19.720000|-155.050000|38|PHTO|Hilo Intl\r\n");
}

TEST_F(World_Building, Takes_airports_of_a_table_by_the_names_of_its_columns) {
    const std::string source =
        "\xEF\xBB\xBF\"name\",ident,type,elevation_ft,latitude_deg,longitude_deg,icao_code\n"
        "\"Zürich, \"\"Kloten\"\"\",LSZH,large_airport,1416,47.4647,8.5492,\n"
        "\"Két\nSor\",\"HU-1\",small_airport,-12,46.5,20.1,\"LHKS\"\n"
        "Old Field,OLD1,closed,5,1,1,\n"
        "No Height,NOHT,small_airport,,1,1,\n"
        "No Place,NOPL,small_airport,5,,,\n"
        "No Code,,small_airport,5,1,1,\n"
        "Off Earth,OFFE,small_airport,5,91,1,\n"
        "Short,SHRT,small_airport\n"
        "\"Open\"x,OPEN,small_airport,5,1,1,\n"
        "Łódź,EPLL,medium_airport,604,51.7219,19.3981,EPLL\n";
    EXPECT_EQ(Built(source),
              "51.721900|19.398100|604|EPLL|L\xF3"
              "dz\r\n"
              "46.500000|20.100000|-12|LHKS|K\xE9t Sor\r\n"
              "47.464700|8.549200|1416|LSZH|Z\xFCrich, \"Kloten\"\r\n");
    EXPECT_EQ(Skips_Of(Build(source)), "3@9 1@8 0@0 1@7 1@6 1@5 0@0 0@0 ");
    EXPECT_EQ(Built("ident,name,latitude_deg,longitude_deg,elevation_ft\nIDNT,Field,1,2,5\n"),
              "1.000000|2.000000|5|IDNT|Field\r\n");
}

TEST_F(World_Building, Replaces_the_old_file_only_by_a_good_one) {
    Write("bin/fs9.wld", "1|1|1|OLDE|Old\r\n");
    const std::string packed = Packed(new_format);
    std::string damaged = packed;
    damaged[packed.size() - 6] = static_cast<char>(damaged[packed.size() - 6] ^ 0x55);
    for (const std::string& bad :
         {packed.substr(0, packed.size() / 2), packed.substr(0, 12), damaged, std::string(),
          "neither" + std::string(new_format), std::string("I\n1000 Version\n99\n"),
          "I\n1000 Version\n1 5 0 0 " + std::string(2'000'000, 'x')})
        EXPECT_THROW(Build(bad), Run_Error) << bad.substr(0, 20);
    EXPECT_THROW(Build_World(directory / "none", directory / "bin/fs9.wld", Heliports::take),
                 Run_Error);
    EXPECT_EQ(Read("bin/fs9.wld"), "1|1|1|OLDE|Old\r\n");
    EXPECT_FALSE(fs::exists(directory / "bin/fs9.wld.bak"));
    Build(new_format);
    Build(new_format);
    EXPECT_EQ(Read("bin/fs9.wld.bak"), "1|1|1|OLDE|Old\r\n") << "kept, the second time too";
    EXPECT_EQ(std::distance(fs::directory_iterator(directory / "bin"), {}), 2);
}

}  // namespace
}  // namespace norvane::test
