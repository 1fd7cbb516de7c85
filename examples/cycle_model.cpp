#include "examples/cycle_model.h"

#include <algorithm>
#include <cmath>

namespace {

// Phase codes and the second at which each phase ends.
struct PHASES {
    struct {
        int code;
        int end;
    } phase[4];

    explicit PHASES(int cycle)
        : phase{{10, START_TIME},
                {20, START_TIME + cycle},
                {30, START_TIME + cycle + OVERRUN_TIME},
                {40, START_TIME + cycle + OVERRUN_TIME + END_TIME}} {}

    int at(double time) const {
        int i = 0;
        while (i < 3 && time >= phase[i].end) ++i;
        return phase[i].code;
    }
};

// What the driver of the cycle asks for, as fractions of the engine's range.
struct DEMAND {
    double speed = 0.0;
    double load = 0.03;
};

// One step of a first-order lag.
void follow(double& value, double target, double time_constant, double step) {
    value += (target - value) * step / (time_constant + step);
}

DEMAND next_demand(RANDOM& random) {
    const double kind = random.between(0.0, 1.0);
    if (kind < 0.18) return {};                                // idle
    if (kind < 0.28) return {random.between(0.3, 0.8), -0.1};  // motoring
    return {random.between(0.2, 1.0), random.between(0.05, 1.0)};
}

// The engine between two records.
struct ENGINE {
    double speed = 0.0;
    double load = 0.03;
    double transient = 0.0;  // how fast the load rises
    double heat = 0.1;
    double fuel_used = 0.0;

    void step(const DEMAND& demand, double step) {
        const double load_before = load;
        follow(speed, demand.speed, 0.9, step);
        follow(load, demand.load, 0.35, step);
        follow(transient, std::max(0.0, load - load_before) / step, 0.4, step);
        follow(heat, 0.15 + 0.85 * std::max(0.0, load) * (0.5 + 0.5 * speed), 60.0, step);
    }
};

void log_engine(CYCLE_MODEL& model, ENGINE& engine, double step) {
    const double fired = std::max(0.0, engine.load);
    const double speed = 650.0 + 1550.0 * engine.speed;
    const double torque = engine.load * 1500.0 * (1.0 - 0.6 * std::pow(engine.speed - 0.45, 2));
    const double power = speed * torque / 9549.3;
    const double fuel_rate = engine.load < 0.0 ? 0.0 : 1.1 + 0.205 * power;
    engine.fuel_used += fuel_rate / 3600.0 * step;
    const auto log = [&model](SIGNAL signal, double value) {
        model.signals[signal].push_back(value);
    };
    log(SPEED, speed);
    log(TORQUE, torque);
    log(POWER, power);
    log(FUEL_RATE, fuel_rate);
    log(FUEL_USED, engine.fuel_used);
    log(EXH_FLOW, 140.0 + 950.0 * engine.speed * (0.4 + 0.6 * fired));
    log(NOX_CONC, 1.5 + 42.0 * fired * (0.7 + 0.3 * engine.heat) + 6.0 * engine.transient);
    log(HC_CONC, 3.5 + 5.0 * (1.0 - fired) + 4.0 * engine.transient);
    log(CO_CONC, 2.0 + 6.0 * fired + 60.0 * engine.transient);
    log(CO2_CONC, 0.05 + 0.011 * fuel_rate);
    log(HEAT, engine.heat);
}

}  // namespace

CYCLE_MODEL run_cycle(const SIMULATED_TEST& test) {
    const PHASES phases(test.cycle);
    const double step = 1.0 / test.rate;
    CYCLE_MODEL model{phases.phase[3].end * test.rate, {}};
    for (auto& signal : model.signals) signal.reserve(static_cast<std::size_t>(model.num_records));

    RANDOM random(test.seed);
    ENGINE engine;
    DEMAND demand;
    double demand_until = 0.0;
    double weather = 0.0;
    for (int record = 0; record < model.num_records; ++record) {
        const double time = static_cast<double>(record) / test.rate;
        const int phase = phases.at(time);
        if (phase != 20) {
            demand = {};
        } else if (time >= demand_until) {
            demand = next_demand(random);
            demand_until = time + random.between(2.0, 12.0);
        }
        engine.step(demand, step);
        follow(weather, random.symmetric() + std::sin(time / 400.0), 150.0, step);
        model.signals[LEVEL].push_back(0.0);
        model.signals[LOG_TIME].push_back(time);
        model.signals[SYSTEM_TIME].push_back(START_OF_TEST + time);
        model.signals[PHASE].push_back(phase);
        model.signals[WEATHER].push_back(weather);
        log_engine(model, engine, step);
    }
    return model;
}
