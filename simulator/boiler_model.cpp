#include "simulator/boiler_model.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "simulator/random.h"

namespace boiler {
namespace {

// Chance is drawn for these purposes; each has its own numbers.
enum Purpose : std::uint64_t {
  kThermostat = 1,
  kTapping,
  kBadStart,
  kFirstAttempt,
  kHistory,
  kNoise,
};

constexpr double kRoomTemperature = 20;
constexpr double kDhwFlowTarget = 75;
constexpr double kPurgeRpm = 4000;
constexpr double kIgnitionRpm = 2800;
constexpr double kLockoutSeconds = 90;
constexpr double kLowestPower = 25;

// Moves `value` towards `target`; after `tau` seconds about two thirds of the way are done.
void Approach(double& value, double target, double tau) {
  value += (target - value) * (kStepSeconds / tau);
}

double Fifths(int value) { return value / 5.0; }

}  // namespace

BoilerModel::BoilerModel(std::uint64_t seed) : seed_(seed) {
  const auto years = [&](std::uint64_t what, int lowest, int span) {
    return lowest + static_cast<int>(Mix(seed, kHistory, what) % static_cast<unsigned>(span));
  };
  BoilerCounters& counters = state_.counters;
  counters.burner_starts = years(1, 2000, 8000);
  counters.lockouts = years(2, 3, 40);
  counters.burner_starts_dhw = counters.burner_starts / 3;
  counters.on_seconds = years(3, 4000, 8000) * 3600.0;
  counters.burner_seconds = counters.on_seconds / 4;
  counters.burner_seconds_dhw = counters.on_seconds / 16;
  counters.ch_pump_seconds = counters.on_seconds / 3;
  counters.dhw_pump_seconds = counters.on_seconds / 14;
  counters.dhw_litres = years(4, 50, 200) * 1000.0;
  int hours = static_cast<int>(counters.on_seconds / 3600);
  for (std::size_t i = 0; i < state_.errors.size(); ++i) {
    hours -= years(10 + i, 20, 300);
    state_.errors[i] = {years(20 + i, 1, 30), hours};
  }
}

void BoilerModel::Step(const BoilerSettings& settings) {
  ++all_steps_;
  ++state_.steps;
  state_.uptime_seconds = state_.steps * kStepSeconds;
  state_.phase_seconds += kStepSeconds;
  state_.noise = Mix(seed_, kNoise, static_cast<std::uint64_t>(all_steps_));
  StepDemand(settings);
  StepPhase(settings);
  StepBurner(settings);
  StepWater(settings);
  StepCounters();
}

void BoilerModel::Restart() {
  failed_ignitions_ = 0;
  state_.steps = 0;
  state_.uptime_seconds = 0;
  state_.error_code = 0;
  state_.test_mode = false;
  state_.power = 0;
  state_.flame_current = 0;
  Enter(Phase::kStandby);
}

void BoilerModel::ResetLockout() {
  if (state_.phase != Phase::kLockout) return;
  state_.error_code = 0;
  failed_ignitions_ = 0;
  Enter(Phase::kStandby);
}

void BoilerModel::LockOut(int error_code) {
  auto& errors = state_.errors;
  std::rotate(errors.begin(), errors.end() - 1, errors.end());
  errors.front() = {error_code, static_cast<int>(state_.counters.on_seconds / 3600)};
  ++state_.counters.lockouts;
  state_.error_code = error_code;
  Enter(Phase::kLockout);
}

// The room thermostat calls for three fifths of eight minutes; in most slots of five minutes
// somebody draws hot water for a while.
void BoilerModel::StepDemand(const BoilerSettings& settings) {
  constexpr double kThermostatPeriod = 480, kThermostatOn = 288, kSlot = 300;
  const double time = static_cast<double>(all_steps_) * kStepSeconds;
  const double first_call = 3 + static_cast<double>(Mix(seed_, kThermostat) % 10);
  const double in_period = std::fmod(time - first_call + kThermostatPeriod, kThermostatPeriod);
  const bool room_calls = in_period < kThermostatOn;
  state_.ch_demand = settings.heat_demand == 255 || (settings.heat_demand == 0 && room_calls);

  const std::uint64_t chance = Mix(seed_, kTapping, static_cast<std::uint64_t>(time / kSlot));
  const double opens = 30 + static_cast<double>(chance % 120);
  const double lasts = 30 + static_cast<double>(chance / 120 % 60);
  const double in_slot = std::fmod(time, kSlot);
  const bool household = chance % 4 != 0 && in_slot >= opens && in_slot < opens + lasts;
  double flow = household ? 6 + static_cast<double>(chance / 7200 % 60) / 10 : 0;
  if (settings.tap_flow > 0) flow = settings.tap_flow / 10.0;
  state_.tap_flow = flow;
  state_.dhw_demand = flow >= 2;
  state_.target = Target(settings);
}

double BoilerModel::Target(const BoilerSettings& settings) const {
  return state_.dhw_demand ? kDhwFlowTarget : settings.flow_setpoint;
}

bool BoilerModel::WantsBurner() const {
  if (!state_.ch_demand && !state_.dhw_demand) return false;
  const double hysteresis = state_.phase == Phase::kBurn ? kBurnerOffAbove : -4;
  return state_.flow < state_.target + hysteresis;
}

void BoilerModel::Enter(Phase phase) {
  state_.phase = phase;
  state_.phase_seconds = 0;
}

void BoilerModel::StepPhase(const BoilerSettings& settings) {
  switch (state_.phase) {
    case Phase::kStandby:
      if (WantsBurner()) Enter(Phase::kPrepurge);
      break;
    case Phase::kPrepurge:
      if (state_.phase_seconds >= Fifths(settings.prepurge)) Enter(Phase::kIgnition);
      break;
    case Phase::kIgnition:
      StepIgnition(settings);
      break;
    case Phase::kBurn:
      if (!WantsBurner()) Enter(Phase::kPostpurge);
      break;
    case Phase::kPostpurge:
      if (state_.phase_seconds >= Fifths(settings.postpurge)) Enter(Phase::kWait);
      break;
    case Phase::kWait:
      if (state_.phase_seconds >= kWaitSeconds) Enter(Phase::kStandby);
      break;
    case Phase::kLockout:
      if (state_.phase_seconds >= kLockoutSeconds) ResetLockout();
      break;
  }
}

void BoilerModel::StepIgnition(const BoilerSettings& settings) {
  if (state_.phase_seconds < Fifths(settings.ignition)) return;
  if (Ignites()) {
    failed_ignitions_ = 0;
    ++state_.counters.burner_starts;
    if (state_.dhw_demand) ++state_.counters.burner_starts_dhw;
    Enter(Phase::kBurn);
  } else if (++failed_ignitions_ >= settings.retries) {
    LockOut(kErrorNoFlame);
  } else {
    Enter(Phase::kPrepurge);
  }
}

// About one start in sixteen fails with all its attempts, one in five with its first.
bool BoilerModel::Ignites() const {
  const BoilerCounters& counters = state_.counters;
  const int starts = counters.burner_starts + counters.lockouts;
  const auto start = static_cast<std::uint64_t>(starts);
  if (Mix(seed_, kBadStart, start) % 16 == 0) return false;
  return failed_ignitions_ > 0 || Mix(seed_, kFirstAttempt, start) % 5 != 0;
}

void BoilerModel::StepBurner(const BoilerSettings& settings) {
  const bool burns = state_.phase == Phase::kBurn;
  state_.test_mode = settings.test_power > 0;
  if (burns) {
    const double by_flow = kLowestPower + 5 * (state_.target - state_.flow);
    const double wanted = state_.test_mode ? settings.test_power : by_flow;
    Approach(state_.power, std::clamp(wanted, kLowestPower, 100.0), 4);
    state_.fan_target = 1500 + 45 * state_.power;
    const double current = 3 + 0.06 * state_.power + 0.3 * Noise(1);
    Approach(state_.flame_current, current, 0.4);
  } else {
    state_.power = 0;
    state_.flame_current = 0;
    const bool purges = state_.phase == Phase::kPrepurge || state_.phase == Phase::kPostpurge;
    state_.fan_target = purges ? kPurgeRpm : state_.phase == Phase::kIgnition ? kIgnitionRpm : 0;
  }
  Approach(state_.fan_rpm, state_.fan_target, 1.5);
  if (state_.fan_target > 0) state_.fan_rpm += 6 * Noise(2);
  state_.fan_rpm = std::clamp(state_.fan_rpm, 0.0, 6500.0);
}

void BoilerModel::StepWater(const BoilerSettings& settings) {
  state_.pump = state_.phase != Phase::kStandby && state_.phase != Phase::kLockout;
  const double gained = 1.2 * state_.power / 100;
  const double lost = (state_.flow - kRoomTemperature) * (state_.pump ? 0.006 : 0.002);
  const double drawn = 0.02 * state_.tap_flow;
  state_.flow += (gained - lost - drawn) * kStepSeconds + 0.02 * Noise(3);
  state_.flow = std::clamp(state_.flow, 5.0, 110.0);

  const double difference = state_.pump ? 3 + 0.15 * state_.power : 1;
  Approach(state_.back, std::max(5.0, state_.flow - difference), 12);
  const bool heats_dhw = state_.dhw_demand && state_.power > 0;
  const double dhw_target = heats_dhw ? settings.dhw_setpoint : state_.dhw_demand ? 12 : 25;
  Approach(state_.dhw, dhw_target, state_.dhw_demand ? 10 : 600);
  const double exhaust_target = state_.power > 0 ? state_.back + 8 + 0.3 * state_.power : 22;
  Approach(state_.exhaust, exhaust_target, 20);

  constexpr double kWeatherPeriod = 1800;
  const double time = static_cast<double>(all_steps_) * kStepSeconds;
  state_.outside = -1 + 4 * std::sin(2 * std::numbers::pi * time / kWeatherPeriod);
  state_.pressure = 1.6 + 0.004 * (state_.flow - 40) + 0.01 * Noise(4);
}

void BoilerModel::StepCounters() {
  BoilerCounters& counters = state_.counters;
  counters.on_seconds += kStepSeconds;
  counters.dhw_litres += state_.tap_flow / 60 * kStepSeconds;
  if (state_.pump) {
    (state_.dhw_demand ? counters.dhw_pump_seconds : counters.ch_pump_seconds) += kStepSeconds;
  }
  if (state_.phase != Phase::kBurn) return;
  counters.burner_seconds += kStepSeconds;
  if (state_.dhw_demand) counters.burner_seconds_dhw += kStepSeconds;
}

double BoilerModel::Noise(std::uint64_t quantity) const {
  const std::uint64_t chance = Mix(state_.noise, quantity);
  return static_cast<double>(chance >> 11) * 0x1.0p-52 - 1;
}

}  // namespace boiler
