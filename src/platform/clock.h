#pragma once

namespace vellora {

// The wall clock. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  // Seconds since 1970-01-01 00:00 UTC. May jump either way when the clock is set.
  virtual double now() const = 0;
};

}  // namespace vellora
