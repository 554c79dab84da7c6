#include <algorithm>
#include <iterator>

#include "common/signal.h"

namespace norvane {

void Connection::Disconnect() {
    if (const std::shared_ptr<Signal_Place> place = m_place.lock())
        place->is_connected = false;
}

bool Connection::Connected() const {
    const std::shared_ptr<Signal_Place> place = m_place.lock();
    return place != nullptr && place->is_connected;
}

void Connections::Keep(std::initializer_list<Connection> connections) {
    m_connections.insert(m_connections.end(), connections);
}

void Connections::Disconnect() {
    for (Connection& connection : std::exchange(m_connections, {}))
        connection.Disconnect();
}

Any_Signal::Any_Signal() : m_places(std::make_shared<Places>()) {}

Any_Signal::~Any_Signal() {
    for (const std::shared_ptr<Signal_Place>& place : *m_places)
        place->is_connected = false;
}

Connection Any_Signal::Add(std::shared_ptr<Signal_Place> place) {
    auto places = std::make_shared<Places>();
    std::copy_if(m_places->begin(), m_places->end(), std::back_inserter(*places),
                 [](const std::shared_ptr<Signal_Place>& each) { return each->is_connected; });
    places->push_back(std::move(place));
    Connection connection{places->back()};
    m_places = std::move(places);
    return connection;
}

}  // namespace norvane
