#pragma once
// The way of everything to the airlines. What is put here is on the disk before it leaves, leaves
// without anybody waiting for it, and is tried until a server has answered. What may have arrived
// is never sent again by itself, unless its receiver can tell. One object, owned by the program;
// panels put deliveries in and listen to what becomes of them.

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/services.h"
#include "common/signal.h"
#include "common/timer_queue.h"
#include "deliveries/delivery.h"
#include "deliveries/delivery_store.h"
#include "net/background_post.h"
#include "net/http_client.h"

namespace norvane {

class Outbox {
  public:
    /// `random` spreads the pauses: anything from 0 to 1.
    Outbox(Services& services, Http_Options http, std::function<double()> random);
    ~Outbox();
    Outbox(const Outbox&) = delete;
    Outbox& operator=(const Outbox&) = delete;

    /// Takes up what earlier runs left, of which everything that waits is tried now.
    void Begin();
    /// Stores a delivery, waiting or as uncertain, and returns its number. Raises when it cannot be
    /// stored: then it is not sent either.
    std::int64_t Put(Airline_Delivery delivery);
    /// This content of this file was put here once, whatever became of it. Raises as `Put`.
    [[nodiscard]] bool Holds(const std::string& file, const std::string& body);

    // The pilot's commands. False when the delivery is not in a state for it, or not there.
    /// What waits, was refused or is uncertain leaves next, whatever it would have waited for.
    bool Send_Now(std::int64_t id);
    bool Give_Up(std::int64_t id);
    /// Tries all that waits, except where a server asked for a pause.
    void Send_All();

    /// As `Delivery_Store`; nothing when it cannot be read (reported).
    [[nodiscard]] std::vector<Airline_Delivery> List();
    [[nodiscard]] std::optional<Airline_Delivery> Find(std::int64_t id);

    /// Something is under way, or leaves at once.
    [[nodiscard]] bool Is_Active() const;
    /// How many have not come to their end by themselves.
    [[nodiscard]] std::size_t Waiting() const { return m_waiting.size() + m_under_way.size(); }

    /// Nothing leaves any more. What is under way has `farewell` to end.
    void Close(std::chrono::milliseconds farewell = {});

    /// One was put in, began, ended or was commanded: its state tells. One that ended has its whole
    /// answer.
    Signal<const Airline_Delivery&> Changed;

  private:
    struct Waiting_Delivery {
        std::string airline;
        std::string flight;
        Delivery_Kind kind = Delivery_Kind::pirep;
        std::string host;
        /// By the clock that never jumps.
        std::chrono::microseconds due{0};
        bool is_held_by_server = false;
        bool is_asked_for = false;
    };
    struct Under_Way {
        Airline_Delivery delivery;
        std::unique_ptr<Background_Post> post;
    };

    Delivery_Store& Store();
    bool Save(const Airline_Delivery& delivery);
    void Wait(const Airline_Delivery& delivery, std::chrono::seconds pause);
    void Take_Up(Airline_Delivery delivery);
    void Tick();
    void Drive_All();
    void Begin_Due();
    void Begin_One(std::int64_t id);
    void End_One(std::int64_t id, const Post_End& end);
    void Break_Off_All();
    /// Those that may leave now, in their order.
    [[nodiscard]] std::vector<std::int64_t> Due() const;
    void Release(const std::string& host);
    void Report(const Airline_Delivery& delivery, const Airline_Delivery& before);
    void Show_News();
    void Set_Timers();
    [[nodiscard]] bool Is_Given_Up() const;
    [[nodiscard]] std::int64_t Now_s() const;

    Services& m_services;
    Http_Options m_http;
    std::function<double()> m_random;
    std::unique_ptr<Delivery_Store> m_store;
    std::map<std::int64_t, Waiting_Delivery> m_waiting;
    std::map<std::int64_t, Under_Way> m_under_way;
    /// What the pilot is told at the next tick: there a box waits for nobody.
    std::vector<Message_Box> m_news;
    bool m_closed = false;
    /// While something is under way.
    Timer m_drive;
    /// While something waits.
    Timer m_look;
};

}  // namespace norvane
