#pragma once
// The inside of the ACARS engine: what its commands do, and the rule that a step is whole or
// undone. A step reads the simulator, works on the state and holds back what it has to say; when
// every read succeeded, its events are raised and the flight is stored in one transaction,
// otherwise the state from before is put back. Commands that come while a step runs wait for its
// end. Owned by clsACARS.

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "acars/cls_acars.h"
#include "acars/engine_context.h"
#include "acars/frm_fs_msg.h"

namespace norvane {

class ACARS_Engine {
  public:
    ACARS_Engine(const clsACARS::Parts& parts, ACARS_Events& events);
    ~ACARS_Engine();
    ACARS_Engine(const ACARS_Engine&) = delete;
    ACARS_Engine& operator=(const ACARS_Engine&) = delete;

    bool Start(std::string& error_text, const clsACARS::Start_Request& request);
    [[nodiscard]] std::string For_Pilot(const std::string& error_text) const;
    void Refresh();
    void Stop_();
    void ReStart(bool& success);
    void Paused();
    void Store();
    void Resume_();
    void Reset();
    void Send_Disconnect_Message();
    void Report_Position();
    void Get_Location(Position& position, double& ground_elevation_ft);
    void Send_Message(Message_Type type, std::string_view text);
    void Set_Flight_Number(std::string_view number);

    /// Hands a text to a carrier, which shows it in the simulator later.
    void Queue_Message(const std::string& text);
    /// Shows a text in the simulator. False when it was stopped: the engine was reset, stopped or
    /// is gone, and nothing of it may be touched any more.
    bool Show_Message(std::string_view text);
    /// As `Show_Message`, after the step that may be running.
    void Write_Message_To_FS(std::string_view text);

    [[nodiscard]] bool Is_Showing_Messages() const;
    [[nodiscard]] bool Is_Stepping() const { return m_stepping; }
    [[nodiscard]] bool Was_Stored() const { return m_stored; }
    [[nodiscard]] const Flight_State& State() const { return m_context.state; }

    std::string form_icao_depart;
    std::string form_icao_arrive;

  private:
    bool Gather(std::string_view procedure, const std::function<void()>& work);
    void Raise_Held_Events(std::string_view procedure, bool end_of_step);
    void Finish_Step();
    void Raise_Failure(const Sim_Reader::Failure& failure);
    void Run_When_Free(std::function<void()> command);
    void Open_And_Initialise(bool resume);
    void Send_Now(Message_Type type, std::string_view text);
    void Stop_Displays();
    void Hand_To_Carriers();

    Engine_Context m_context;
    bool m_stepping = false;
    /// The last transaction of a step went through.
    bool m_stored = true;
    /// Whoever opened the link closes it.
    bool m_opened_link = false;
    /// Why the last `Gather` failed, when it was no read.
    std::string m_fault;
    std::vector<std::function<void()>> m_waiting_commands;
    std::list<std::unique_ptr<frmFSMsg>> m_carriers;
    /// Shared with the displays that are under way; true tells them to end.
    std::shared_ptr<bool> m_displays_stopped = std::make_shared<bool>(false);
};

}  // namespace norvane
