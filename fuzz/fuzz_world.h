#pragma once
// What the fuzz targets share: a quiet world whose files stand in memory, and a reader that spends
// the input as numbers and texts. A target is one function; what it must not do is crash, hang or
// break a promise that it checks itself.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "common/run_error.h"
#include "support/test_world.h"

namespace norvane::fuzz {

inline std::string_view Text_Of(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the program, so that the fuzzer keeps the input that broke a promise.
inline void Check(bool holds) {
    if (!holds)
        std::abort();
}

/// Runs a reader that may refuse its input, by a Run_Error and in no other way.
template <class Body>
void May_Refuse(Body&& body) {
    try {
        body();
    } catch (const Run_Error& refused) {
        Check(!refused.Description().empty());
    }
}

class Fuzz_World : public test::Test_World {
  public:
    using Test_World::clock;
    using Test_World::desktop;
    using Test_World::directory;
    using Test_World::services;
    using Test_World::store;
    using Test_World::Take_Errors;
    using Test_World::Write;

  private:
    void TestBody() override {}
};

/// One world for all inputs of a target that leaves nothing behind but reports.
inline Fuzz_World& Shared_World() {
    static Fuzz_World world;
    world.Take_Errors();
    world.desktop.boxes.clear();
    return world;
}

/// The input as a stream: what is asked for past its end is zero.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_left(data, size) {}

    [[nodiscard]] bool Is_Used_Up() const { return m_left.empty(); }
    [[nodiscard]] std::uint8_t Byte() {
        const auto piece = Bytes(1);
        return piece.empty() ? std::uint8_t{0} : piece[0];
    }
    [[nodiscard]] std::uint32_t Word() {
        std::uint32_t word = 0;
        const auto piece = Bytes(sizeof word);
        std::memcpy(&word, piece.data(), piece.size());
        return word;
    }
    /// At most so many, fewer at the end.
    [[nodiscard]] std::span<const std::uint8_t> Bytes(std::size_t count) {
        const auto piece = m_left.first(std::min(count, m_left.size()));
        m_left = m_left.subspan(piece.size());
        return piece;
    }
    [[nodiscard]] std::string Text(std::size_t count) {
        const auto piece = Bytes(count);
        return {reinterpret_cast<const char*>(piece.data()), piece.size()};
    }

  private:
    std::span<const std::uint8_t> m_left;
};

}  // namespace norvane::fuzz
