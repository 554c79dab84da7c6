#pragma once
// The way of a logged flight's PIREP into the outbox: noted before its row goes to the log, handed
// over when its file is written, and made up after a program that was ended anywhere between. What
// the airline answers is shown. Owned by the ACARS panel.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "acarspanel/due_pireps.h"
#include "acarspanel/panel_parts.h"
#include "common/run_error.h"
#include "common/services.h"
#include "common/signal.h"
#include "common/timer_queue.h"

namespace norvane {

struct Airline_Delivery;

class Pirep_Queue {
  public:
    explicit Pirep_Queue(const Panel_Parts& parts);

    /// Notes the PIREP of the flight that is about to be logged. One that was logged before has
    /// had its post.
    void Note_Due(const std::string& row, bool was_logged_before);
    /// The flight is in the log and its PIREP is written: the outbox gets it.
    void Send(bool was_logged_before);
    /// Makes up what an earlier run left between a flight's row and the outbox. A row that is not
    /// in the log has no PIREP yet.
    void Take_Up(const std::function<bool(const std::string& row)>& stands_in_log);
    /// The panel closes: no answer is shown any more.
    void Close();

  private:
    [[nodiscard]] bool Sends_PIREPs() const;
    void Hand_Over(const Due_PIREP& due);
    void Hand_Over_All();
    void Delivery_Changed(const Airline_Delivery& delivery);
    void Tell_Failure(const Due_PIREP& due, const Run_Error& error);

    Panel_Parts m_parts;
    Due_PIREPs m_due;
    /// Of an earlier run: handed over at a tick, where what is told waits for nobody.
    std::vector<Due_PIREP> m_left;
    /// The viewer says that this one is on its way; 0: none.
    std::int64_t m_shown = 0;
    std::optional<Wait_Notice> m_notice;
    Timer m_timer;
    Connections m_outbox_connections;
};

}  // namespace norvane
