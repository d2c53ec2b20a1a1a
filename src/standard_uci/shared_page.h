// What the worker shows while it searches, in memory that the front sees too: the count of nodes, and the best line so
// far. The worker writes it, the front reads it; a worker may be killed at any point of its writing.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

namespace ondrel::standard_uci {

// The best line so far, in a form that may lie in shared memory.
struct PublishedLine {
    static constexpr int longest = 8;

    std::uint32_t serial = 0;  // rises with each line of a search; 0: there is none yet
    std::int32_t depth = 0;
    std::int32_t deepest_ply = 0;
    std::int32_t hashfull = 0;
    float score = 0;
    std::uint32_t is_upper_bound = 0;
    std::uint32_t is_hidden = 0;
    std::uint32_t length = 0;
    std::uint64_t nodes = 0;
    std::array<std::array<char, 4>, longest> moves{};
};

class SharedPage {
public:
    void publish_nodes(std::uint64_t nodes) { nodes_.store(nodes, std::memory_order_relaxed); }
    [[nodiscard]] std::uint64_t nodes() const { return nodes_.load(std::memory_order_relaxed); }

    // One writer alone. The count of writings is odd while one goes on.
    void publish(const PublishedLine& line) {
        Words words{};
        std::memcpy(words.data(), &line, sizeof line);
        writings_.fetch_add(1, std::memory_order_acq_rel);
        for (std::size_t k = 0; k < words_of_line; ++k) {
            line_[k].store(words[k], std::memory_order_relaxed);
        }
        writings_.fetch_add(1, std::memory_order_release);
    }

    // Nothing if the writer was killed over its writing.
    [[nodiscard]] std::optional<PublishedLine> line() const {
        for (int k = 0; k < patience; ++k) {
            const std::uint32_t before = writings_.load(std::memory_order_acquire);
            Words words{};
            for (std::size_t i = 0; i < words_of_line; ++i) {
                words[i] = line_[i].load(std::memory_order_relaxed);
            }
            std::atomic_thread_fence(std::memory_order_acquire);
            if (before % 2 == 0 && writings_.load(std::memory_order_relaxed) == before) {
                PublishedLine read;
                std::memcpy(static_cast<void*>(&read), words.data(), sizeof read);
                return read;
            }
        }
        return std::nullopt;
    }

private:
    static constexpr int patience = 1000;
    static constexpr std::size_t words_of_line = sizeof(PublishedLine) / sizeof(std::uint64_t);
    using Words = std::array<std::uint64_t, words_of_line>;

    std::atomic<std::uint64_t> nodes_{0};
    std::atomic<std::uint32_t> writings_{0};
    std::array<std::atomic<std::uint64_t>, words_of_line> line_{};
};

static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "the page is shared by processes");
static_assert(std::is_trivially_copyable_v<PublishedLine> && sizeof(PublishedLine) % sizeof(std::uint64_t) == 0);

}  // namespace ondrel::standard_uci
