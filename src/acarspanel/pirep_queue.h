#pragma once
// The way of a logged flight's PIREP to the airline: noted before its row goes to the log, posted
// from a timer of its own beside which all others go on, and made up after a program that was ended
// anywhere between. Owned by the ACARS panel.

#include <deque>
#include <functional>
#include <string>

#include "acarspanel/due_pireps.h"
#include "acarspanel/panel_parts.h"
#include "common/timer_queue.h"

namespace norvane {

class Step_Queue;

class Pirep_Queue {
  public:
    Pirep_Queue(const Panel_Parts& parts, const Step_Queue& steps);

    /// Notes the PIREP of the flight that is about to be logged. One that was logged before has
    /// had its post.
    void Note_Due(const std::string& row, bool was_logged_before);
    /// The flight is in the log and its PIREP is written: what is left is the post.
    void Send(bool was_logged_before);
    /// Makes up what an earlier run left between a flight's row and the airline. A row that is not
    /// in the log has no PIREP yet.
    void Take_Up(const std::function<bool(const std::string& row)>& stands_in_log);
    /// PIREPs are on their way to the airline, or wait for their turn.
    [[nodiscard]] bool Is_Posting() const { return m_posting || !m_posts.empty(); }

    /// The panel closes: a post that is under way is given up.
    void Close() { m_closed = true; }
    /// Sends what waits, or leaves it due; a post that was given up stays due.
    void End(bool sends_rest);

  private:
    /// A PIREP that waits to be posted.
    struct Post {
        std::string file;
        std::string airline;
        /// The pilot logged the flight and waits for the answer.
        bool by_pilot = false;
        /// An earlier run was ended while the airline's server had it.
        bool is_uncertain = false;
    };

    [[nodiscard]] bool Sends_PIREPs() const;
    void Post_All();
    void Post_One(const Post& post);
    void Send_To(const clsVASettings& airline, const Post& post);
    void Tell_No_Script(const Post& post);
    void Tell_Uncertain(const Post& post);
    [[nodiscard]] bool Is_Given_Up() const;

    Panel_Parts m_parts;
    const Step_Queue& m_steps;
    Due_PIREPs m_due;
    std::deque<Post> m_posts;
    bool m_posting = false;
    bool m_closed = false;
    Timer m_timer;
};

}  // namespace norvane
