#include "deliveries/outbox.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

#include "acars/cls_utc.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "deliveries/delivery_rules.h"

namespace norvane {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr milliseconds drive_interval(10);
constexpr milliseconds look_interval(1000);
/// A pilot who closes the program waits for what is under way no longer than this at a time.
constexpr int farewell_step_ms = 10;
constexpr std::int64_t kept_s = std::int64_t{30} * 24 * 3600;
constexpr std::size_t most_at_once = 8;
constexpr int seconds_per_minute = 60;

std::string Topic_Of(const Airline_Delivery& delivery) {
    return fmt::format("delivery {}", delivery.id);
}

/// What the pilot is told of a PIREP that was not simply taken.
std::string Words_For_Pilot_Of(const Airline_Delivery& delivery) {
    std::string words = fmt::format("The {} at {} ", Words_Of(delivery), Host_Of(delivery));
    switch (delivery.state) {
        case Delivery_State::waiting:
            words +=
                "could not be sent yet.  Norvane tries again by itself, also after its next "
                "start.";
            break;
        case Delivery_State::uncertain:
            words +=
                "was sent, but no proper answer came back: the airline may have got it or "
                "not.  If it is not on the airline's pages, \"File\" / \"Send PIREP ...\" sends "
                "it again.";
            break;
        default:
            words += "was not taken: " + Outcome_Words(delivery) +
                     ".  \"File\" / \"Send PIREP ...\" sends it again.";
            break;
    }
    words += "  Your flight log is not affected.";
    if (!delivery.file.empty())
        words += "  The file is kept in\r\n\r\n" + delivery.file;
    return words;
}

}  // namespace

Outbox::Outbox(Services& services, Http_Options http, std::function<double()> random)
    : m_services(services),
      m_http(std::move(http)),
      m_random(std::move(random)),
      m_drive(services.desktop.Timers(), drive_interval),
      m_look(services.desktop.Timers(), look_interval) {
    if (!m_http.together)
        m_http.together = std::make_shared<Http_Transfers>();
    m_drive.tick.Connect([this] { Tick(); });
    m_look.tick.Connect([this] { Tick(); });
}

Outbox::~Outbox() {
    Guarded(m_services, "Outbox.Close()", Show::silent, [&] { Break_Off_All(); });
}

bool Outbox::Is_Given_Up() const {
    return m_http.given_up && m_http.given_up();
}

std::int64_t Outbox::Now_s() const {
    if (const auto utc = m_services.clock.Utc_Now())
        return Seconds_Of(*utc);
    return Seconds_Of(m_services.clock.Local_Now()) +
           std::int64_t{clsUTC(m_services.clock).Bias()} * seconds_per_minute;
}

Delivery_Store& Outbox::Store() {
    if (!m_store) {
        m_store = std::make_unique<Delivery_Store>(m_services.program_directory,
                                                   Delivery_Store::Use::write);
        if (!m_store->Trouble().empty()) {
            Log_Error(m_services, "Outbox.Store()",
                      {error_number::path_file_access, m_store->Trouble(),
                       "The deliveries that waited for airlines cannot be read.  The file that "
                       "holds them is kept; PIREPs are in \"reports\" as well, and \"Send PIREP "
                       "...\" sends them."},
                      Show::box);
        }
    }
    return *m_store;
}

void Outbox::Begin() {
    Guarded(m_services, "Outbox.Begin()", Show::silent, [&] {
        if (!std::filesystem::exists(Delivery_Store::File_In(m_services.program_directory)))
            return;
        // Another program that has the lock sends what stands there.
        if (!Store().Holds_Lock())
            return;
        Store().Prune(Now_s() - kept_s);
        for (Airline_Delivery& delivery : Store().List())
            Take_Up(std::move(delivery));
    });
    Set_Timers();
}

void Outbox::Take_Up(Airline_Delivery delivery) {
    if (Is_Final(delivery.state))
        return;
    if (delivery.state == Delivery_State::sending) {
        const Airline_Delivery before = delivery;
        delivery.state =
            delivery.is_idempotent ? Delivery_State::waiting : Delivery_State::uncertain;
        delivery.failure = "Norvane was ended while it was sent";
        delivery.changed_s = Now_s();
        Store().Update(delivery);
        if (Is_Final(delivery.state))
            Report(delivery, before);
    }
    if (delivery.state == Delivery_State::waiting)
        Wait(delivery, seconds(std::max<std::int64_t>(0, delivery.not_before_s - Now_s())));
}

void Outbox::Wait(const Airline_Delivery& delivery, seconds pause) {
    m_waiting[delivery.id] = {delivery.airline,
                              delivery.flight,
                              delivery.kind,
                              Host_Of(delivery),
                              m_services.clock.Monotonic() + pause,
                              delivery.not_before_s > Now_s(),
                              false};
}

std::int64_t Outbox::Put(Airline_Delivery delivery) {
    delivery.created_s = delivery.changed_s = Now_s();
    delivery.id = Store().Add(delivery);
    if (delivery.state == Delivery_State::waiting)
        Wait(delivery, seconds(0));
    else
        Report(delivery, Airline_Delivery());
    Set_Timers();
    Changed.Emit(delivery);
    return delivery.id;
}

bool Outbox::Holds(const std::string& file, const std::string& body) {
    return Store().Holds(file, body);
}

bool Outbox::Send_Now(std::int64_t id) {
    auto delivery = m_under_way.contains(id) ? std::nullopt : Find(id);
    if (!delivery || delivery->state == Delivery_State::delivered ||
        delivery->state == Delivery_State::given_up)
        return false;
    delivery->state = Delivery_State::waiting;
    delivery->not_before_s = 0;
    if (!Save(*delivery))
        return false;
    Wait(*delivery, seconds(0));
    m_waiting[id].is_asked_for = true;
    Set_Timers();
    Changed.Emit(*delivery);
    return true;
}

bool Outbox::Give_Up(std::int64_t id) {
    auto delivery = m_under_way.contains(id) ? std::nullopt : Find(id);
    if (!delivery || delivery->state == Delivery_State::delivered ||
        delivery->state == Delivery_State::given_up)
        return false;
    delivery->state = Delivery_State::given_up;
    if (!Save(*delivery))
        return false;
    m_waiting.erase(id);
    m_services.desktop.Withdraw(Topic_Of(*delivery));
    Set_Timers();
    Changed.Emit(*delivery);
    return true;
}

void Outbox::Send_All() {
    for (auto& [id, waiting] : m_waiting) {
        if (!waiting.is_held_by_server)
            waiting.due = m_services.clock.Monotonic();
    }
    Set_Timers();
}

bool Outbox::Save(const Airline_Delivery& delivery) {
    return Guarded(m_services, "Outbox.Save()", Show::silent, [&] {
        Airline_Delivery stored = delivery;
        stored.changed_s = Now_s();
        Store().Update(stored);
    });
}

std::vector<Airline_Delivery> Outbox::List() {
    std::vector<Airline_Delivery> all;
    Guarded(m_services, "Outbox.List()", Show::silent, [&] {
        if (m_store ||
            std::filesystem::exists(Delivery_Store::File_In(m_services.program_directory)))
            all = Store().List();
    });
    return all;
}

std::optional<Airline_Delivery> Outbox::Find(std::int64_t id) {
    std::optional<Airline_Delivery> found;
    Guarded(m_services, "Outbox.Find()", Show::silent, [&] {
        if (m_store ||
            std::filesystem::exists(Delivery_Store::File_In(m_services.program_directory)))
            found = Store().Find(id);
    });
    return found;
}

bool Outbox::Is_Active() const {
    return !m_under_way.empty() || (!m_closed && !Due().empty());
}

/// A flight's deliveries leave one at a time and those of a kind in their order, so that one that
/// has a pause keeps those behind it.
std::vector<std::int64_t> Outbox::Due() const {
    std::vector<std::int64_t> due;
    if (!m_store || !m_store->Holds_Lock())
        return due;
    const microseconds now = m_services.clock.Monotonic();
    std::set<std::pair<std::string, std::string>> busy;
    for (const auto& [id, under_way] : m_under_way)
        busy.emplace(under_way.delivery.airline, under_way.delivery.flight);
    std::set<std::tuple<std::string, std::string, Delivery_Kind>> behind;
    for (const auto& [id, waiting] : m_waiting) {
        const bool is_first = behind.emplace(waiting.airline, waiting.flight, waiting.kind).second;
        if (waiting.due <= now && (is_first || waiting.is_asked_for) &&
            busy.emplace(waiting.airline, waiting.flight).second)
            due.push_back(id);
    }
    return due;
}

void Outbox::Set_Timers() {
    m_drive.Set_Enabled(Is_Active() || (!m_closed && !m_news.empty()));
    m_look.Set_Enabled(!m_closed && !m_waiting.empty());
}

void Outbox::Tick() {
    if (Is_Given_Up()) {
        Break_Off_All();
    } else {
        Drive_All();
        Begin_Due();
    }
    Set_Timers();
    Show_News();
}

void Outbox::Drive_All() {
    std::vector<std::int64_t> ids;
    for (const auto& [id, under_way] : m_under_way)
        ids.push_back(id);
    for (const std::int64_t id : ids) {
        const auto found = m_under_way.find(id);
        if (found == m_under_way.end())
            continue;
        if (const auto end = found->second.post->Drive())
            End_One(id, *end);
    }
}

void Outbox::Begin_Due() {
    if (m_closed || Is_Given_Up())
        return;
    for (const std::int64_t id : Due()) {
        if (m_under_way.size() >= most_at_once)
            return;
        Begin_One(id);
    }
}

/// Stored as sending before anything leaves: who is killed from here on finds it in doubt.
void Outbox::Begin_One(std::int64_t id) {
    auto delivery = Find(id);
    if (!delivery) {
        // The file may be there again later; without it nothing is sent.
        m_waiting[id].due = m_services.clock.Monotonic() + Pause_After(1, m_random());
        return;
    }
    const Airline_Delivery before = *delivery;
    delivery->state = Delivery_State::sending;
    ++delivery->attempts;
    delivery->next_s = delivery->not_before_s = 0;
    if (!Save(*delivery)) {
        Wait(before, Pause_After(before.attempts + 1, m_random()));
        return;
    }
    m_waiting.erase(id);
    auto post = std::make_unique<Background_Post>(
        delivery->address,
        Http_Exchange::Content{delivery->method, delivery->headers, delivery->body}, m_http);
    const auto& begun =
        m_under_way.emplace(id, Under_Way{std::move(*delivery), std::move(post)}).first->second;
    // A copy: a listener may end it.
    Changed.Emit(Airline_Delivery(begun.delivery));
}

void Outbox::End_One(std::int64_t id, const Post_End& end) {
    const auto found = m_under_way.find(id);
    Airline_Delivery delivery = std::move(found->second.delivery);
    const Airline_Delivery before = delivery;
    // The end may be the post's own.
    const Post_End known = end;
    m_under_way.erase(found);
    const std::int64_t now_s = Now_s();
    const Verdict verdict = Judge(known, delivery.is_idempotent, now_s);
    delivery.state = verdict.state;
    delivery.status = known.status;
    delivery.answer = known.answer;
    delivery.failure = known.failure;
    delivery.changed_s = now_s;
    if (verdict.state == Delivery_State::waiting) {
        const seconds pause =
            verdict.asked_pause.value_or(Pause_After(delivery.attempts, m_random()));
        delivery.next_s = now_s + pause.count();
        delivery.not_before_s = verdict.asked_pause ? delivery.next_s : 0;
        Wait(delivery, pause);
    }
    // What cannot be stored stays "sending" there, and is in doubt after the next start.
    static_cast<void>(Save(delivery));
    Report(delivery, before);
    if (delivery.state == Delivery_State::delivered)
        Release(Host_Of(delivery));
    Changed.Emit(delivery);
}

/// A server that takes something again is asked at once for the rest.
void Outbox::Release(const std::string& host) {
    for (auto& [id, waiting] : m_waiting) {
        if (waiting.host == host && !waiting.is_held_by_server)
            waiting.due = std::min(waiting.due, m_services.clock.Monotonic());
    }
}

/// Said once for each new turn; a try that failed as the one before is no news.
void Outbox::Report(const Airline_Delivery& delivery, const Airline_Delivery& before) {
    if (delivery.state == Delivery_State::delivered) {
        m_services.desktop.Withdraw(Topic_Of(delivery));
        return;
    }
    const bool is_retry = delivery.state == Delivery_State::waiting && before.attempts > 1;
    if (is_retry && delivery.failure == before.failure && delivery.status == before.status)
        return;
    const std::string outcome = Outcome_Words(delivery);
    Log_Error(
        m_services, "Outbox.Send()",
        {error_number::other, fmt::format("The {}{} is {}: {} ({})", Words_Of(delivery),
                                          delivery.file.empty() ? "" : ", " + delivery.file,
                                          Name_Of(delivery.state), outcome, Host_Of(delivery))},
        Show::silent);
    if (is_retry || delivery.kind != Delivery_Kind::pirep)
        return;
    m_news.push_back({Words_For_Pilot_Of(delivery), std::string(product_name), Icon::information,
                      Buttons::ok, outcome, Topic_Of(delivery)});
}

void Outbox::Show_News() {
    for (const Message_Box& box : std::exchange(m_news, {}))
        m_services.desktop.Show_Message(box);
}

void Outbox::Break_Off_All() {
    while (!m_under_way.empty()) {
        const auto first = m_under_way.begin();
        End_One(first->first, first->second.post->Break_Off());
    }
}

void Outbox::Close(milliseconds farewell) {
    m_closed = true;
    const microseconds end = m_services.clock.Monotonic() + farewell;
    while (!m_under_way.empty() && !Is_Given_Up() && m_services.clock.Monotonic() < end) {
        Drive_All();
        m_http.together->Wait(farewell_step_ms);
    }
    Break_Off_All();
    Set_Timers();
}

}  // namespace norvane
