#include "acars/cls_acars.h"

#include "acars/airports.h"
#include "acars/engine.h"

namespace norvane {

clsACARS::clsACARS(const Parts& parts) : m_engine(std::make_unique<ACARS_Engine>(parts, events)) {}

clsACARS::~clsACARS() = default;

bool clsACARS::Start(std::string& error_text, const Start_Request& request) {
    return m_engine->Start(error_text, request);
}

std::string clsACARS::For_Pilot(const std::string& error_text) const {
    return m_engine->For_Pilot(error_text);
}

void clsACARS::Refresh() {
    m_engine->Refresh();
}

void clsACARS::Stop_() {
    m_engine->Stop_();
}

void clsACARS::ReStart(bool& success) {
    m_engine->ReStart(success);
}

void clsACARS::Paused() {
    m_engine->Paused();
}

void clsACARS::Store() {
    m_engine->Store();
}

void clsACARS::Resume_() {
    m_engine->Resume_();
}

void clsACARS::Reset() {
    m_engine->Reset();
}

void clsACARS::Send_Disconnect_Message() {
    m_engine->Send_Disconnect_Message();
}

void clsACARS::Report_Position() {
    m_engine->Report_Position();
}

void clsACARS::Get_Location(Position& position, double& ground_elevation_ft) {
    m_engine->Get_Location(position, ground_elevation_ft);
}

void clsACARS::Send_Message(Message_Type type, std::string_view text) {
    m_engine->Send_Message(type, text);
}

void clsACARS::Write_Message_To_FS(std::string_view text) {
    m_engine->Write_Message_To_FS(text);
}

bool clsACARS::Is_Showing_Messages() const {
    return m_engine->Is_Showing_Messages();
}

bool clsACARS::Is_Stepping() const {
    return m_engine->Is_Stepping();
}

bool clsACARS::Was_Stored() const {
    return m_engine->Was_Stored();
}

const std::string& clsACARS::TIME_OUT() const {
    return m_engine->State().At(Block_Event::out).time_utc;
}

const std::string& clsACARS::TIME_OFF() const {
    return m_engine->State().At(Block_Event::off).time_utc;
}

const std::string& clsACARS::TIME_ON() const {
    return m_engine->State().At(Block_Event::on).time_utc;
}

const std::string& clsACARS::TIME_IN() const {
    return m_engine->State().At(Block_Event::in).time_utc;
}

const std::string& clsACARS::LOCAL_TIME_OUT() const {
    return m_engine->State().At(Block_Event::out).time_local;
}

const std::string& clsACARS::LOCAL_TIME_OFF() const {
    return m_engine->State().At(Block_Event::off).time_local;
}

const std::string& clsACARS::LOCAL_TIME_ON() const {
    return m_engine->State().At(Block_Event::on).time_local;
}

const std::string& clsACARS::LOCAL_TIME_IN() const {
    return m_engine->State().At(Block_Event::in).time_local;
}

const std::string& clsACARS::Flight_Date() const {
    return m_engine->State().flight_date;
}

const std::string& clsACARS::FSUIPC_Version() const {
    return m_engine->State().fsuipc_version;
}

const std::string& clsACARS::FS_VERSION() const {
    return m_engine->State().simulator_name;
}

const std::string& clsACARS::FS_Path() const {
    return m_engine->State().simulator_directory;
}

std::string clsACARS::World() const {
    return World_Name(FS_VERSION());
}

std::string clsACARS::WorldUD() const {
    return World_UD_Name(FS_VERSION());
}

const std::string& clsACARS::Departure_ICAO() const {
    return m_engine->State().departure.icao;
}

const std::string& clsACARS::Departure_Name() const {
    return m_engine->State().departure.name;
}

const std::string& clsACARS::Arrival_ICAO() const {
    return m_engine->State().arrival.icao;
}

const std::string& clsACARS::Arrival_Name() const {
    return m_engine->State().arrival.name;
}

void clsACARS::Set_Airline_Flight_Number(std::string_view number) {
    m_engine->Set_Flight_Number(number);
}

void clsACARS::Set_Form_ICAO_Depart(std::string_view code) {
    m_engine->form_icao_depart = code;
}

const std::string& clsACARS::Form_ICAO_Depart() const {
    return m_engine->form_icao_depart;
}

void clsACARS::Set_Form_ICAO_Arrive(std::string_view code) {
    m_engine->form_icao_arrive = code;
}

const std::string& clsACARS::Form_ICAO_Arrive() const {
    return m_engine->form_icao_arrive;
}

}  // namespace norvane
