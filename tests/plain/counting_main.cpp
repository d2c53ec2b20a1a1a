// The plain engine with the counting clock. At its end it tells on standard error what the clock has done.
#include <iostream>

#include "plain/frontend.h"

int main() {
    plain::run_engine();
    const plain::ClockCounts& counts = plain::clock_counts;
    std::cerr << "clock " << counts.searches << " searches " << counts.hard_stops << " hard stops " << counts.soft_stops
              << " soft stops " << counts.extensions << " extensions " << counts.refused_extensions
              << " refused extensions\n";
}
