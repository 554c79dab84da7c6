// A recording of any bytes: read, or refused by its line; what was read can be replayed, and
// whatever it gives as a flight can be told, stored, given out and computed again.

#include "simlink/recording.h"
#include "app/recompute.h"
#include "blackbox/derive.h"
#include "blackbox/flight_export.h"
#include "blackbox/flight_json.h"
#include "blackbox/flight_text.h"
#include "blackbox/flight_track.h"
#include "fuzz_world.h"
#include "simhost/recording/replay.h"
#include "simlink/offset_area.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto path = world.Write("a.rec", fuzz::Text_Of(data, size));
    fuzz::May_Refuse([&] {
        const auto moments = Read_Recording(path);
        Replay replay(moments);
        Offset_Area area;
        for (const double seconds : {0.0, replay.Length() / 2, replay.Length(), 0.0})
            replay.Apply(seconds, area);
        const Flight_Summary flight = Derive_Flight("a", moments);
        std::string told = Flight_Text(flight) + Evidence_Words(flight) + Landing_Text(flight);
        for (const char* format : {"kml", "gpx", "geojson", "csv"})
            told += Export_Flight(flight, *Export_Format_Of(format));
        fuzz::Check(!told.empty() && Differences(flight, flight).empty());
        fuzz::Check(Unpack_Track(Pack_Track(flight.track)).size() == flight.track.size());
        const std::string row = Recompute(world.services, moments, {}, {}).row;
        fuzz::Check(row.empty() || Recompute(world.services, moments, row, {}).row == row);
    });
    return 0;
}
