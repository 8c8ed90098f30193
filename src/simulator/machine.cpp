#include "simulator/machine.h"

#include <cmath>
#include <utility>

namespace ostrel::simulator {

namespace {

constexpr std::size_t kMaxSteps = 100'000;
constexpr std::size_t kMaxOutput = 64 * 1024;
constexpr std::size_t kMaxStack = 256;

}  // namespace

std::string Machine::RunAll(const Program& program) {
  std::size_t steps = 0;
  next_ = 0;
  while (next_ < program.size()) {
    const Item& item = program[next_++];
    steps += item.steps;
    if (steps > kMaxSteps) throw Fault{"too many steps"};
    resultBefore_ = std::exchange(result_, false);
    item.run(*this, item);
    if (!station_.IsServing()) return {};
  }
  return output_;
}

void Machine::Push(Value value) {
  if (stack_.size() >= kMaxStack) throw Fault{"stack full"};
  const auto* number = std::get_if<double>(&value);
  if (number && !std::isfinite(*number)) throw Fault{"number out of range"};
  stack_.push_back(std::move(value));
}

Value Machine::Pop() {
  Top();
  Value value = std::move(stack_.back());
  stack_.pop_back();
  return value;
}

double Machine::PopNumber() {
  const Value value = Pop();
  if (const auto* number = std::get_if<double>(&value)) return *number;
  throw Fault{"not a number: " + std::get<std::string>(value)};
}

const Value& Machine::Top() const {
  if (stack_.empty()) throw Fault{"stack empty"};
  return stack_.back();
}

void Machine::Print(std::string_view text, bool joined) {
  if (printed_ && !joined) output_ += "\r\n";
  output_ += text;
  printed_ = true;
  if (output_.size() > kMaxOutput) throw Fault{"output too long"};
}

void Machine::PrintResult(std::string_view text, bool joined) {
  Print(text, joined);
  result_ = true;
}

bool Machine::NextIndex() {
  Loop& loop = loops_.back();
  if (++loop.index <= loop.last) return true;
  loops_.pop_back();
  return false;
}

double Machine::LoopIndex() const {
  if (loops_.empty()) throw Fault{"no loop"};
  return loops_.back().index;
}

Values Machine::Evaluate(const std::vector<Operand>& operands) {
  Values values;
  for (const Operand& operand : operands) {
    switch (operand.kind) {
      case Operand::Kind::kLiteral:
        values.push_back(operand.literal);
        break;
      case Operand::Kind::kLoopIndex:
        values.emplace_back(LoopIndex());
        break;
      case Operand::Kind::kTopOfStack:
        values.push_back(Pop());
        break;
    }
  }
  return values;
}

std::string AnswerOf(Station& station, std::string_view expression) {
  try {
    station.access.NoteLine();
    const Program program = ParseProgram(expression);
    if (!station.access.Allows(NeededRight(program))) throw Fault{station.access.Refusal()};
    return Machine(station).RunAll(program);
  } catch (const Fault& fault) {
    return "<<" + fault.message + ">>";
  }
}

}  // namespace ostrel::simulator
