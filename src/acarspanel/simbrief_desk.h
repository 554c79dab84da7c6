#pragma once
// Fetches the pilot's plan from SimBrief when the link for it is clicked, shows what it would fill
// and asks whether it is to be taken over: without a Yes nothing happens. Owned by the ACARS panel,
// which takes the plan over.

#include <string>
#include <string_view>
#include <vector>

#include "acarspanel/panel_parts.h"
#include "common/signal.h"
#include "net/simbrief.h"

namespace norvane {

class ACARS_Form;
class Flight_Stage;
class Request_Round;
class Step_Queue;

class Simbrief_Desk {
  public:
    Simbrief_Desk(const Panel_Parts& parts, ACARS_Form& form, const Flight_Stage& stage,
                  Step_Queue& steps, const Request_Round& round);

    /// What speaks against the plan, a sentence each: it is old, or begins elsewhere than where
    /// tracking began.
    [[nodiscard]] std::vector<std::string> Doubts(const Simbrief_Plan& plan) const;

    /// The pilot wants this plan on the panel.
    Signal<const Simbrief_Plan&> agreed;
    /// Times and fuel of a plan that was taken over, as `Planned_Text` writes them.
    Signal<const std::string&> planned;

  private:
    void Fetch();
    [[nodiscard]] std::string Question(const Simbrief_Plan& plan) const;
    [[nodiscard]] bool Is_Wanted(int round) const;

    Panel_Parts m_parts;
    ACARS_Form& m_form;
    const Flight_Stage& m_stage;
    Step_Queue& m_steps;
    const Request_Round& m_round;
    /// One request and one question at a time.
    bool m_is_asking = false;
};

}  // namespace norvane
