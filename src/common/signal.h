#pragma once
// Typed notices: a sender owns a `Signal`, a listener connects a function to it, and keeps the
// connections in a `Connections` that ends before what the functions use. The one mechanism for
// events in the whole program.

#include <functional>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace norvane {

/// One function's place at a signal.
struct Signal_Place {
    Signal_Place() = default;
    virtual ~Signal_Place() = default;
    Signal_Place(const Signal_Place&) = delete;
    Signal_Place& operator=(const Signal_Place&) = delete;

    bool is_connected = true;
};

/// Names a place at a signal, and may outlive it; a copy names the same place.
class Connection {
  public:
    Connection() = default;
    explicit Connection(std::weak_ptr<Signal_Place> place) : m_place(std::move(place)) {}

    /// The function is not called again, not even by an emission that is under way.
    void Disconnect();
    [[nodiscard]] bool Connected() const;

  private:
    std::weak_ptr<Signal_Place> m_place;
};

/// The connections of one listener; they end with it. The last member of a class ends first.
class Connections {
  public:
    Connections() = default;
    ~Connections() { Disconnect(); }
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    void Keep(const Connection& connection) { m_connections.push_back(connection); }
    void Keep(std::initializer_list<Connection> connections);
    void Disconnect();

  private:
    std::vector<Connection> m_connections;
};

/// What signals of all types share.
class Any_Signal {
  public:
    Any_Signal(const Any_Signal&) = delete;
    Any_Signal& operator=(const Any_Signal&) = delete;

  protected:
    using Places = std::vector<std::shared_ptr<Signal_Place>>;

    Any_Signal();
    ~Any_Signal();
    Connection Add(std::shared_ptr<Signal_Place> place);

    // Never changed, only replaced: an emission goes on with those it began with.
    std::shared_ptr<const Places> m_places;
};

/// Calls what is connected in the order of connecting. During an emission, functions may connect
/// and disconnect (what is new is called from the next emission on), emit again, and delete the
/// signal, after which nothing more is called. What a function throws ends the emission.
template <typename... Args>
class Signal : public Any_Signal {
  public:
    Connection Connect(std::function<void(Args...)> function) {
        return Add(std::make_shared<Place>(std::move(function)));
    }
    /// Calls `(listener.*function)(…)`.
    template <typename Listener, typename Owner>
    Connection Connect(Listener& listener, void (Owner::*function)(Args...)) {
        return Connect([&listener, function](Args... args) { (listener.*function)(args...); });
    }
    void Emit(Args... args) {
        const std::shared_ptr<const Places> places = m_places;
        for (const std::shared_ptr<Signal_Place>& place : *places)
            if (place->is_connected)
                static_cast<const Place&>(*place).function(args...);
    }

  private:
    struct Place : Signal_Place {
        explicit Place(std::function<void(Args...)> called) : function(std::move(called)) {}
        std::function<void(Args...)> function;
    };
};

}  // namespace norvane
