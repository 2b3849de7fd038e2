// The boiler behind the controller: burner, water, fan, counters and errors, stepped in tenths of a
// second. What it does follows from the seed, the number of steps and the settings, nothing else.
#pragma once

#include <array>
#include <cstdint>

namespace boiler {

constexpr std::int64_t kStepUs = 100'000;
constexpr double kStepSeconds = 0.1;

enum class Phase : std::uint8_t {
  kStandby = 0,
  kPrepurge = 1,
  kIgnition = 2,
  kBurn = 3,
  kPostpurge = 4,
  kWait = 5,  // minimum time between two burner starts
  kLockout = 6,
};

constexpr int kErrorNoFlame = 4;
// The least time between two burner starts.
constexpr double kWaitSeconds = 15;
// So many degrees above the target of the flow the burner goes off.
constexpr double kBurnerOffAbove = 5;

// What the user and the installer set. The controller fills it from its memory before each step.
struct BoilerSettings {
  int flow_setpoint = 60;  // degrees
  int dhw_setpoint = 50;   // degrees
  int heat_demand = 0;     // 0: by the room thermostat, 255: always, others: never
  int tap_flow = 0;        // tenths of a litre per minute; 0: by the household
  int prepurge = 25;       // fifths of a second, as the next two
  int ignition = 15;
  int postpurge = 40;
  int retries = 3;     // failed ignitions that make a lockout
  int test_power = 0;  // percent, in test mode; 0: by the flow temperature
};

struct ErrorEntry {
  int code = 0;
  int hours = 0;  // of operation, when the error came
};

struct BoilerCounters {
  int burner_starts = 0;
  int lockouts = 0;
  int burner_starts_dhw = 0;
  double burner_seconds = 0;
  double burner_seconds_dhw = 0;
  double on_seconds = 0;
  double dhw_litres = 0;
  double ch_pump_seconds = 0;
  double dhw_pump_seconds = 0;
};

// All that can be seen of the boiler. Temperatures in degrees.
struct BoilerState {
  Phase phase = Phase::kStandby;
  double phase_seconds = 0;
  bool ch_demand = false;
  bool dhw_demand = false;
  bool test_mode = false;
  double target = 60;  // of the flow
  double flow = 35;
  double back = 30;  // return water
  double dhw = 40;
  double exhaust = 25;
  double outside = 0;
  double fan_rpm = 0;
  double fan_target = 0;
  double power = 0;          // percent
  double pressure = 1.6;     // bar
  double flame_current = 0;  // microampere
  double tap_flow = 0;       // litres per minute
  bool pump = false;
  int error_code = 0;  // 0: none
  double uptime_seconds = 0;
  int steps = 0;  // since power on
  std::uint64_t noise = 0;
  BoilerCounters counters;
  std::array<ErrorEntry, 8> errors{};  // newest first
};

class BoilerModel {
 public:
  // Starts cold, with counters and an error history that years of work have left.
  explicit BoilerModel(std::uint64_t seed);

  const BoilerState& Now() const { return state_; }

  // One tenth of a second.
  void Step(const BoilerSettings& settings);

  // Power off and on: the burner is off, the water keeps its heat, counters and errors stay.
  void Restart();

  // Ends a lockout; does nothing in another phase.
  void ResetLockout();
  // Locks out with this error at once.
  void LockOut(int error_code);

 private:
  void StepDemand(const BoilerSettings& settings);
  void StepPhase(const BoilerSettings& settings);
  void StepIgnition(const BoilerSettings& settings);
  void StepBurner(const BoilerSettings& settings);
  void StepWater(const BoilerSettings& settings);
  void StepCounters();
  void Enter(Phase phase);
  bool Ignites() const;
  double Target(const BoilerSettings& settings) const;
  bool WantsBurner() const;
  // -1 to 1, for the given quantity at this step.
  double Noise(std::uint64_t quantity) const;

  std::uint64_t seed_;
  std::int64_t all_steps_ = 0;  // since the model was made, over restarts
  int failed_ignitions_ = 0;
  BoilerState state_;
};

}  // namespace boiler
