#include "blackbox/derive.h"

#include <utility>

#include "blackbox/figures.h"
#include "blackbox/flight_notes.h"
#include "blackbox/flown_figures.h"
#include "blackbox/landing.h"
#include "blackbox/phases.h"
#include "blackbox/recorded_flight.h"
#include "blackbox/segments.h"
#include "blackbox/track.h"

namespace norvane {

Flight_Summary Derive_Flight(std::string id, const std::vector<Recorded_Moment>& moments) {
    Flight_Summary summary;
    summary.id = std::move(id);
    Flight_Notes notes = Read_Notes(moments, summary);
    Recorded_Flight flight = Decode_Moments(moments);
    if (!flight.samples.empty())
        summary.length_seconds = flight.samples.back().point.seconds;
    summary.incidents = Mark_Segments(flight.samples, notes.rests);
    if (!notes.by_engine)
        Find_Events(flight.samples, notes);
    Set_Phases(flight.samples, notes.phases);
    summary.events = Describe_Events(flight.samples, notes.events);
    summary.phases = Sum_Phases(flight.samples);
    summary.planned = Beside_Planned(notes.planned, flight.samples, summary);
    summary.landings = Find_Landings(flight);
    summary.track = Thin_Track(flight.samples);
    Measure_Flight(flight.samples, summary);
    return summary;
}

}  // namespace norvane
