// The fuzzer's one source of choices: splitmix64, so a seed gives the same sequence on every
// machine and compiler (the standard distributions do not promise that).
#pragma once
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace orbex::fuzz {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    std::uint32_t below(std::uint32_t bound) { return bound ? static_cast<std::uint32_t>(next() % bound) : 0; }
    bool percent(std::uint32_t chance) { return below(100) < chance; }

    template <class T>
    T pick(std::initializer_list<T> choices) {
        return choices.begin()[below(static_cast<std::uint32_t>(choices.size()))];
    }

private:
    std::uint64_t state_;
};

}  // namespace orbex::fuzz
