// What is known of flights outlives everything but itself: restarts, damaged files, recordings
// that went. What it says is what the recordings say.

#include "blackbox/flight_store.h"

#include <gmock/gmock.h>

#include <sqlite3.h>

#include <fstream>

#include "blackbox/flight_json.h"
#include "blackbox/flight_library.h"
#include "blackbox/sample_flight.h"
#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class Flight_Stores : public Test_World {
  protected:
    Flight_Stores() { fs::create_directories(directory); }

    [[nodiscard]] Flight_Store Open(Store_Use use = Store_Use::write) const {
        return {directory, use};
    }
    /// Fakes a derivation: the flight's length is the recording's, its ID decides the rest.
    [[nodiscard]] Flight_Library Library(Store_Use use = Store_Use::write) {
        return {directory, use,
                [](std::string id, const std::vector<Recorded_Moment>& moments) {
                    Flight_Summary flight = Sample_Flight(std::move(id));
                    flight.length_seconds = moments.back().seconds;
                    return flight;
                },
                [this](const std::string& fault) { told.push_back(fault); }};
    }
    void Record(const std::string& name, int seconds = 100) const {
        Write_File(directory / name,
                   "norvane-recording 1\n0.000 0366:0100\n" + std::to_string(seconds) + ".000\n");
    }
    [[nodiscard]] std::vector<std::string> Ids(const std::vector<Flight_Summary>& flights) const {
        std::vector<std::string> ids;
        for (const auto& flight : flights)
            ids.push_back(flight.id);
        return ids;
    }
    [[nodiscard]] std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(directory))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    const fs::path directory = services.program_directory / "flights";
    const fs::path file = directory / "flights.sqlite";
    std::vector<std::string> told;
};

TEST_F(Flight_Stores, Give_back_every_figure) {
    const Flight_Summary flight = Sample_Flight();
    Flight_Summary other = Sample_Flight("other");
    other.events.clear();
    other.track.back().position.longitude = 179.9999999;
    {
        Flight_Store kept = Open();
        kept.Put(other);
        kept.Put(flight);
        kept.Put(flight);
    }
    Flight_Store kept = Open();
    for (const auto& put : {flight, other}) {
        const auto found = kept.Find(put.id);
        ASSERT_TRUE(found);
        EXPECT_EQ(Flight_Json(*found), Flight_Json(put));
        ASSERT_EQ(found->track.size(), put.track.size());
        for (std::size_t i = 0; i < put.track.size(); ++i) {
            EXPECT_EQ(found->track[i].position, put.track[i].position);
            EXPECT_EQ(found->track[i].begins_segment, put.track[i].begins_segment);
            EXPECT_EQ(found->track[i].phase, put.track[i].phase);
            EXPECT_EQ(found->track[i].true_heading_deg, put.track[i].true_heading_deg);
        }
    }
    EXPECT_EQ(kept.List().at(0).landings.at(1).touches.size(), 2U);
    EXPECT_FALSE(kept.Find("no such"));
    EXPECT_EQ(kept.Find("other")->landings.at(1).touches.size(), 2U);
}

TEST_F(Flight_Stores, Begin_anew_when_they_are_damaged_or_gone) {
    Open().Put(Sample_Flight());
    const std::string whole = Read_File(file);
    for (const std::string& content :
         {std::string(5000, 'x'), whole.substr(0, whole.size() / 2),
          whole.substr(0, 200) + std::string(whole.size() - 200, '\7')}) {
        Write_File(file, content);
        const Flight_Store looked = Open(Store_Use::look);
        EXPECT_NE(looked.Trouble(), "");
        EXPECT_TRUE(looked.List().empty());
        EXPECT_EQ(Read_File(file), content) << "who looks changes nothing";
        Flight_Store kept = Open();
        EXPECT_THAT(kept.Trouble(), HasSubstr("flights.sqlite.damaged"));
        kept.Put(Sample_Flight());
        EXPECT_TRUE(Open(Store_Use::look).Find(Sample_Flight().id));
    }
    EXPECT_THAT(Files(), ElementsAre("flights.sqlite", "flights.sqlite.damaged",
                                     "flights.sqlite.damaged2", "flights.sqlite.damaged3"));
    fs::remove_all(directory);
    EXPECT_EQ(Open(Store_Use::look).Trouble(), "");
    EXPECT_FALSE(fs::exists(directory)) << "who looks makes nothing";
    EXPECT_EQ(Open().Trouble(), "");
}

TEST_F(Flight_Stores, Of_an_older_program_are_read_and_go_on) {
    Open().Put(Sample_Flight());
    Sqlite_Database(file, SQLITE_OPEN_READWRITE, {})
        .Execute("DROP TABLE planned; PRAGMA user_version = 1");
    Flight_Summary without = Sample_Flight();
    without.planned.clear();
    EXPECT_EQ(Flight_Json(Open(Store_Use::look).Find(without.id).value()), Flight_Json(without));
    Open().Put(Sample_Flight());
    EXPECT_EQ(Open(Store_Use::look).List().at(0).planned.size(), 4U);
}

TEST_F(Flight_Stores, List_what_is_asked_for) {
    Flight_Store kept = Open();
    for (const auto& [id, began, origin] : {std::tuple{"c", "2026-11-24T00:00:00.000Z", "LFPG"},
                                            {"b", "2026-11-23T23:59:59.999Z", ""},
                                            {"d", "", "LFPG"},
                                            {"a", "2026-11-23T23:59:59.999Z", "EIDW"}}) {
        Flight_Summary flight = Sample_Flight(id);
        flight.began_utc = began;
        flight.origin = origin;
        kept.Put(flight);
    }
    const Date first{2026, 11, 23};
    const Date second{2026, 11, 24};
    EXPECT_THAT(Ids(kept.List()), ElementsAre("d", "a", "b", "c"));
    EXPECT_THAT(Ids(kept.List({first, first, {}})), ElementsAre("a", "b"));
    EXPECT_THAT(Ids(kept.List({second, {}, {}})), ElementsAre("c"));
    EXPECT_THAT(Ids(kept.List({{}, first, {}})), ElementsAre("a", "b"));
    EXPECT_THAT(Ids(kept.List({{}, {}, "lfpg"})), ElementsAre("d", "c"));
    EXPECT_EQ(kept.List({{}, {}, "KBOS"}).size(), 4U);
}

TEST_F(Flight_Stores, Know_the_oldest_recordings) {
    for (const auto* name : {"2026-11-23_1405Z_A-B_1.rec.gz", "2026-11-23_1406Z_A-B_1.rec.gz",
                             "2025-12-31_2359Z.rec.gz", "mine.rec.gz", "2024-01-01_0000Z.rec",
                             "flights.sqlite", "notes.txt", ".x.rec.gz"})
        Record(name);
    const auto beyond = [&](int keep) {
        std::vector<std::string> ids;
        for (const auto& recording : Recordings_Beyond(directory, keep))
            ids.push_back(recording.id);
        return ids;
    };
    EXPECT_THAT(beyond(-1), ElementsAre());
    EXPECT_THAT(beyond(4), ElementsAre());
    EXPECT_THAT(beyond(2), ElementsAre("2025-12-31_2359Z", "2026-11-23_1405Z_A-B_1"));
    // Named by the pilot: it counts from when it was written, today.
    EXPECT_THAT(beyond(0), ElementsAre("2025-12-31_2359Z", "2026-11-23_1405Z_A-B_1",
                                       "2026-11-23_1406Z_A-B_1", "mine"));
}

TEST_F(Flight_Stores, Are_made_again_from_the_recordings) {
    Record("a.rec.gz");
    Record("b.rec", 200);
    Write_File(directory / "torn.rec.gz", "norvane-recording 1\n");
    Open().Put(Sample_Flight("pruned"));
    EXPECT_THAT(Ids(Library(Store_Use::look).List({})), ElementsAre("a", "b", "pruned"));
    EXPECT_EQ(Library(Store_Use::look).Find("b").length_seconds, 200) << "derived when asked for";
    EXPECT_EQ(Library().Rebuild(), 1U);
    EXPECT_FALSE(Open().Find("b")) << "stored under the name that it gets when it is packed";
    const auto before = Flight_Json(*Open().Find("a"));
    EXPECT_EQ(Library().Rebuild(), 1U);
    EXPECT_EQ(Flight_Json(*Open().Find("a")), before);
    EXPECT_TRUE(Open().Find("pruned")) << "what has no recording stays";
    EXPECT_THAT(told, testing::Each(HasSubstr("torn.rec.gz")));
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(Flight_Stores, Are_held_against_the_recordings) {
    Record("a.rec.gz");
    Record("flying.rec");
    Library().Rebuild();
    EXPECT_TRUE(Library(Store_Use::look).Verify().empty());
    Flight_Summary changed = *Open().Find("a");
    changed.landings.at(1).touches.at(0).rate_fpm = -99;
    changed.landings.at(1).touches.pop_back();
    changed.incidents.clear();
    changed.highest_ft *= 1 + 1e-14;
    changed.track.at(3).altitude_ft += 1;
    Open().Put(changed);
    Record("new.rec.gz");
    std::vector<std::string> found;
    for (const auto& flight : Library(Store_Use::look).Verify()) {
        for (const auto& one : flight.differences)
            found.push_back(flight.id + " " + one.field + " " + one.stored + " " + one.derived);
    }
    EXPECT_THAT(found, testing::Contains("a landings/1/touches/0/rate_fpm -99 -187.25"));
    EXPECT_THAT(found, testing::Contains("a landings/1/touches/1/bank_deg  -0.5"));
    EXPECT_THAT(found, testing::Contains("a incidents/1/value  12.5"));
    EXPECT_THAT(found, testing::Contains(HasSubstr("a track 5 points, another one from 30.000")));
    EXPECT_EQ(found.back(), "new flight  new");
    EXPECT_THAT(found, testing::Not(testing::Contains(HasSubstr("highest"))));
}

TEST_F(Flight_Stores, Take_in_a_recording_once) {
    const fs::path outside = services.program_directory / "mine.rec";
    Write_File(outside, "norvane-recording 1\n0.000 0366:0100\n9.000\n");
    EXPECT_EQ(Library().Import(outside).id, "mine");
    EXPECT_EQ(Read_Recording(directory / "mine.rec.gz").size(), 2U);
    EXPECT_EQ(Open().Find("mine")->length_seconds, 9);
    EXPECT_THROW(Library().Import(outside), Run_Error);
    fs::remove(directory / "mine.rec.gz");
    EXPECT_THROW(Library().Import(outside), Run_Error) << "what is known of it would be lost";
    Write_File(outside.parent_path() / "bad.rec", "nothing");
    EXPECT_THROW(Library().Import(outside.parent_path() / "bad.rec"), Run_Error);
    EXPECT_THAT(Files(), ElementsAre("flights.sqlite"));
}

}  // namespace
}  // namespace norvane::test
