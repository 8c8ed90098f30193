#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program.h"
#include "simulator/station.h"
#include "simulator/value.h"

namespace ostrel::simulator {

/// The stack machine that carries out one command line on one station. Its operations are for the
/// words; each throws Fault where a limit is passed or something is missing.
class Machine {
 public:
  explicit Machine(Station& station) : station_(station) {}

  /// Carries out the program and gives what it printed. Ends after kMaxSteps at the latest.
  std::string RunAll(const Program& program);

  Station& Device() { return station_; }

  void Push(Value value);
  Value Pop();
  double PopNumber();
  const Value& Top() const;

  /// Adds a line to the answer, or to its last line when joined.
  void Print(std::string_view text, bool joined);
  /// What a read or a listing prints: a "!" directly behind it means this and prints nothing more.
  void PrintResult(std::string_view text, bool joined);
  bool ResultPrintedBefore() const { return resultBefore_; }

  /// The next item to carry out.
  void GoTo(std::size_t position) { next_ = position; }
  void BeginLoop(double first, double last) { loops_.push_back({first, last}); }
  /// Goes to the next index; false when the loop is over.
  bool NextIndex();
  /// Of the innermost loop.
  double LoopIndex() const;

  /// What operands stand for now.
  Values Evaluate(const std::vector<Operand>& operands);

 private:
  struct Loop {
    double index;
    double last;
  };

  Station& station_;
  std::vector<Value> stack_;
  std::vector<Loop> loops_;
  std::string output_;
  bool printed_ = false;
  bool result_ = false;
  bool resultBefore_ = false;
  std::size_t next_ = 0;
};

/// One station's answer to an expression: what it prints, or its fault between "<<" and ">>".
std::string AnswerOf(Station& station, std::string_view expression);

}  // namespace ostrel::simulator
