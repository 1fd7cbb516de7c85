// A transient engine cycle, record by record. The logged channels follow its signals.
#ifndef QUON5_EXAMPLES_CYCLE_MODEL_H
#define QUON5_EXAMPLES_CYCLE_MODEL_H

#include <cstdint>
#include <vector>

#include "examples/simulated_test.h"

enum SIGNAL : short {
    LEVEL,        // nothing: the channel stays at its level
    LOG_TIME,     // s since the first record
    SYSTEM_TIME,  // s since the start of 1970
    PHASE,        // phase code of the sync channel
    SPEED,        // rpm
    TORQUE,       // n_m
    POWER,        // kw
    FUEL_RATE,    // kg/hr
    FUEL_USED,    // kg since the first record
    EXH_FLOW,     // exhaust mass flow, kg/hr
    NOX_CONC,     // concentrations in the diluted exhaust, ppm
    HC_CONC,
    CO_CONC,
    CO2_CONC,  // percent
    HEAT,      // warmth of engine and exhaust, 0 to 1
    WEATHER,   // slow drift of the ambient conditions, -1 to 1
    NUM_SIGNALS,
};

// Uniform random numbers, the same for the same seed everywhere.
class RANDOM {
 public:
    explicit RANDOM(std::uint64_t seed) : state_(seed * 2 + 0x9E3779B97F4A7C15U) {}

    // From -1 to 1.
    double symmetric() {
        state_ ^= state_ >> 12U;
        state_ ^= state_ << 25U;
        state_ ^= state_ >> 27U;
        const std::uint64_t bits = (state_ * 0x2545F4914F6CDD1DU) >> 11U;
        return static_cast<double>(bits) * 0x1p-52 - 1.0;
    }

    double between(double low, double high) {
        return low + (high - low) * 0.5 * (symmetric() + 1.0);
    }

 private:
    std::uint64_t state_;  // never 0: the seed makes an odd number
};

// Each signal over all records of the test.
struct CYCLE_MODEL {
    int num_records;
    std::vector<double> signals[NUM_SIGNALS];
};

CYCLE_MODEL run_cycle(const SIMULATED_TEST& test);

#endif
