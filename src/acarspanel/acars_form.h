#pragma once
// The controls of the ACARS panel: the form that the pilot sees, without a rule of the flight.
// Public models that the window binds to and the program without a window reads. A figure's caption
// in the window follows its label: shown and usable with it. OUT, OFF, ON and IN are the four block
// events of a flight; ZFW is the zero fuel weight, N settings the engines' speeds at take-off.

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "acarspanel/custom_field.h"
#include "blackbox/planned_flight.h"
#include "common/controls.h"
#include "common/signal.h"
#include "config/cls_app_settings.h"

namespace norvane {

/// Both ends of a flight: places in what exists for each.
namespace flight_end {
inline constexpr std::size_t origin = 0;
inline constexpr std::size_t destination = 1;
inline constexpr std::size_t count = 2;
}  // namespace flight_end

class ACARS_Form {
  public:
    ACARS_Form();
    ACARS_Form(const ACARS_Form&) = delete;
    ACARS_Form& operator=(const ACARS_Form&) = delete;

    /// Empties all of it.
    void Clear_All_Fields();
    /// Remembers what the fields show: the finished flight is complete.
    void Keep_Old_Values();
    /// A value of the finished flight that came late.
    void Keep_Old_Value(const Text_Box& box) { m_old_values[&box] = box.Text(); }
    /// Empties what still shows the finished flight; what the pilot entered since stays.
    void Clear_Old_Values();
    /// Calls `changed` when any of the fields does.
    void Note_Changes(const std::function<void()>& changed);

    /// Which flight the form shows: "KJFK to KBOS, OFF 1414Z", as far as it is known.
    [[nodiscard]] std::string Flight_Words() const;
    void Set_Rules(bool instrument);
    void Show_ATC_Flight(std::string_view flight);
    [[nodiscard]] Text_Box& Code(std::size_t end);
    [[nodiscard]] Label& Name(std::size_t end);
    [[nodiscard]] Text_Box& Weather(std::size_t end);
    /// 0 identity and figures, 1 airline page, 2 optional fields, 3 airline fields.
    [[nodiscard]] int Page() const { return m_page; }
    void Show_Page(int page);

    Signal<> Page_Changed;
    /// The input focus belongs to this control.
    Signal<const Control&> Focus_Moved;

    Link hypOn{"On"};
    Link hypPause{"Pause"};
    Link hypLog{"Log Flight"};
    Link hypReset{"Reset"};
    Link hypReport{"ACARS Report"};
    Link hypFP{"Flight Plan:"};
    Link hypSimBrief{"Fetch from SimBrief"};
    Link hypNext{"==>"};
    Link hypBack{"<=="};
    Menu_Command mnuPosition{"&Position Report"};
    Menu_Command mnuExit{"E&xit"};

    /// Which flight is stored, and what goes on with it; hidden while none waits.
    Label lblStored;
    Text_Box txtDate;
    Text_Box txtAircraftType;
    Text_Box txtAircraftID;
    Text_Box txtOrigin;
    Text_Box txtDestination;
    Label lblOriginName;
    Label lblDestinationName;
    Label lblATCFlight;

    Label lblTimeOut;
    Label lblTimeOff;
    Label lblTimeOn;
    Label lblTimeIn;
    Label lblBlockTime;
    Label lblBlockTimeHHMM;
    Label lblFlightTime;
    Label lblFlightTimeHHMM;

    Label lblFuelOut;
    Label lblFuelOff;
    Label lblFuelOn;
    Label lblFuelIn;
    Label lblBlockFuel;
    Label lblFlightFuel;

    /// By `Planned`, beside what was flown; empty without a plan that tells it.
    std::array<Label, planned_count> lblPlanned;

    Label lblZFW;
    Label lblTaxiWeight;
    Label lblTakeOffWeight;
    Label lblLandingWeight;
    Label lblRampWeight;
    Label lblDistance;

    Text_Box txtFlightNumber;
    Text_Box txtPax;
    Text_Box txtCargo;
    Text_Box txtFlightLevel;
    Text_Box txtWXOrigin;
    Text_Box txtWXDestination;
    Text_Box txtFlightPlan{Field_Lines::many};
    Text_Box txtComments{Field_Lines::many};
    /// Both clear until one is set; from then on exactly one is.
    Check_Box chkIFR;
    Check_Box chkVFR;

    Label lblMaxTaxiOrigin;
    Label lblNSettings;
    Label lblIASTakeOff;
    Label lblVS;
    Label lblIASLanding;
    Label lblMaxTaxiDestination;

    std::array<Custom_Field, optional_field_count> optFields;
    std::array<Custom_Field, airline_field_count> vaFields;

  private:
    /// Every control of a kind, the custom fields' among them.
    std::vector<Label*> m_labels;
    std::vector<Text_Box*> m_boxes;
    std::vector<Combo_Box*> m_lists;
    /// What the fields showed when the finished flight was last complete.
    std::map<const Control*, std::string> m_old_values;
    std::pair<bool, bool> m_old_rules;
    int m_page = 0;
};

}  // namespace norvane
