#pragma once

#include <chrono>
#include <string>

/// How far a long job is, as a line: a bar, a part of a hundred, and counts.
std::string progressText(long done, long all);

/// Shows that line on a terminal at the end of the standard error, at most 10 times a second; elsewhere nothing.
class Progress
{
 public:
  /// Jobs of few steps show nothing.
  explicit Progress(long all);
  Progress(Progress const &) = delete;
  Progress &operator=(Progress const &) = delete;
  ~Progress() { hide(); }

  /// Whether standard error is a terminal, so that counting the steps is worth while.
  static bool isSeen();

  void step();
  /// Takes the line away, so that something else can be written; the next step may show it again.
  void hide();

 private:
  using Clock = std::chrono::steady_clock;

  long const all_;
  bool const isOn_;
  long done_ = 0;
  std::size_t shown_ = 0;  ///< how many characters long the line is
  Clock::time_point last_;
};
