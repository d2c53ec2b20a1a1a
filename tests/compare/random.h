// Random numbers that are the same on every machine.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace compare {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    int below(int n) { return static_cast<int>(next() % static_cast<std::uint64_t>(n)); }
    int between(int lowest, int highest) { return lowest + below(highest - lowest + 1); }
    bool chance(int percent) { return below(100) < percent; }

    template <typename List>
    const auto& pick(const List& list) {
        return *(list.begin() + below(static_cast<int>(list.size())));
    }
    std::string pick(std::initializer_list<const char*> list) {
        return *(list.begin() + below(static_cast<int>(list.size())));
    }
    // An index, each as likely as its weight.
    int pick_weighted(std::initializer_list<int> weights) {
        int sum = 0;
        for (const int weight : weights) {
            sum += weight;
        }
        int left = below(sum);
        int index = 0;
        for (const int weight : weights) {
            if (left < weight) {
                break;
            }
            left -= weight;
            ++index;
        }
        return index;
    }

private:
    std::uint64_t state_;
};

}  // namespace compare
