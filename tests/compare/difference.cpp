#include "compare/difference.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace compare {

namespace {

bool begins_with(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

// Without the field " time N".
std::string without_time(const std::string& line) {
    const std::string field = " time ";
    const auto begin = line.find(field);
    if (begin == std::string::npos) {
        return line;
    }
    auto end = begin + field.size();
    while (end < line.size() && (line[end] == '-' || std::isdigit(static_cast<unsigned char>(line[end])) != 0)) {
        ++end;
    }
    return line.substr(0, begin) + line.substr(end);
}

bool is_clock_line(const std::string& line) { return begins_with(line, "clock "); }

// What is compared: the output, then what stands on standard error, then how the process ended.
std::vector<std::string> transcript(const Run& run, bool real_time) {
    std::vector<std::string> lines;
    for (const std::string& line : run.output) {
        if (!real_time) {
            lines.push_back(line);
        } else if (!begins_with(line, "info nps")) {
            lines.push_back(without_time(line));
        }
    }
    for (const std::string& line : run.errors) {
        if (!is_clock_line(line)) {
            lines.push_back("(standard error) " + line);
        }
    }
    lines.push_back("(" + run.end + ")");
    return lines;
}

// The nodes of every search, from its last line.
std::int64_t count_nodes(const Run& run) {
    std::int64_t nodes = 0;
    for (std::size_t i = 0; i + 1 < run.output.size(); ++i) {
        const auto field = run.output[i].find(" nodes ");
        if (field != std::string::npos && begins_with(run.output[i + 1], "bestmove")) {
            nodes += std::atoll(run.output[i].c_str() + field + 7);
        }
    }
    return nodes;
}

ClockCounts read_clock_counts(const Run& run) {
    ClockCounts counts;
    for (const std::string& line : run.errors) {
        if (is_clock_line(line)) {
            std::sscanf(line.c_str(),
                        "clock %d searches %d hard stops %d soft stops %d extensions %d refused extensions",
                        &counts.searches, &counts.hard_stops, &counts.soft_stops, &counts.extensions,
                        &counts.refused_extensions);
        }
    }
    return counts;
}

}  // namespace

Verdict compare_on(const Engines& engines, const Conversation& conversation) {
    const bool real_time = conversation.clock_step == 0;
    Verdict verdict;
    const Run judge = run_engine(engines.first, conversation, engines.limit_in_seconds);
    verdict.seconds_of_judge = judge.seconds;
    verdict.nodes = count_nodes(judge);
    verdict.clock = read_clock_counts(judge);
    verdict.too_dear = judge.out_of_time;
    if (verdict.too_dear) {
        return verdict;
    }
    const Run judged = run_engine(engines.second, conversation, engines.limit_in_seconds);
    const auto first = transcript(judge, real_time);
    const auto second = transcript(judged, real_time);
    const std::size_t lines = std::max(first.size(), second.size());
    for (std::size_t i = 0; i < lines; ++i) {
        const std::string x = i < first.size() ? first[i] : "(nothing)";
        const std::string y = i < second.size() ? second[i] : "(nothing)";
        if (x != y) {
            verdict.difference = Difference{i + 1, x, y};
            break;
        }
    }
    return verdict;
}

}  // namespace compare
