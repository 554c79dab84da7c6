#pragma once
// The statistics panel, "Time by AC Type": block time of the active flight log by aircraft type,
// and its report. It reads the log's file itself. Owned by the program; the window binds a grid to
// it. Failures are reported under "ucStats." and the operation's name.

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "common/controls.h"
#include "common/signal.h"

namespace norvane {

struct Regional;
struct Services;
class Log_Table;
class clsAppSettings;

/// Block time of a log's flights by aircraft type.
struct Hours_By_Type {
    struct Type {
        std::string aircraft_type;
        double hours = 0;
    };
    /// Ascending by character code; types that differ by letter case are different ones. A log with
    /// flights of no type begins with such a type of 0 hours: they are not summed.
    std::vector<Type> types;
    double all_hours = 0;
};
[[nodiscard]] Hours_By_Type Sum_Hours_By_Type(Log_Table table, const Regional& regional);

class ucStats {
  public:
    /// A row of the grid; the time is in decimal hours, written with the pilot's signs.
    struct Type_Total {
        std::string aircraft_type;
        std::string total_time;
    };

    /// The grid's columns.
    static constexpr std::array<std::string_view, 2> captions{"Aircraft Type", "Total Time"};
    static constexpr int type_width_twips = 5500;

    ucStats(Services& services, const clsAppSettings& settings);

    /// Reads the log anew. A log without flights is said to have none.
    void Display_Flight_Stats();
    /// Of the totals as they are shown, to "report.html" in the program directory; opened.
    void Create_Report();

    /// Empty until the first refresh.
    [[nodiscard]] const std::vector<Type_Total>& Totals() const { return m_totals; }
    Signal<> totals_changed;

    /// The grid's caption, "Total Flight Time: " and the sum.
    Label tdbTimeCaption;
    std::array<Link, 2> hypACARS{Link("Refresh Flight Totals by Aircraft Type"),
                                 Link("Flight Time Report")};

  private:
    void Show_Sums(const Hours_By_Type& sums);
    [[nodiscard]] std::filesystem::path Write_Report() const;

    Services& m_services;
    const clsAppSettings& m_settings;
    std::vector<Type_Total> m_totals;
};

}  // namespace norvane
