#include "simulator/words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "simulator/access.h"
#include "simulator/event_log.h"
#include "simulator/file_store.h"
#include "simulator/machine.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

namespace {

// Beyond it a double no longer counts in ones, and a loop over it would not end.
constexpr double kMaxLoopIndex = 1e9;

template <typename Operation>
void Calculate(Machine& machine, Operation operation) {
  const double right = machine.PopNumber();
  const double left = machine.PopNumber();
  machine.Push(operation(left, right));
}

void RunAdd(Machine& machine, const Item&) {
  Calculate(machine, [](double left, double right) { return left + right; });
}

void RunSubtract(Machine& machine, const Item&) {
  Calculate(machine, [](double left, double right) { return left - right; });
}

void RunMultiply(Machine& machine, const Item&) {
  Calculate(machine, [](double left, double right) { return left * right; });
}

void RunDivide(Machine& machine, const Item&) {
  Calculate(machine, [](double left, double right) {
    if (right == 0) throw Fault{"division by zero"};
    return left / right;
  });
}

void RunRoot(Machine& machine, const Item&) {
  machine.Push(std::sqrt(machine.PopNumber()));
}

/// Pushes whether the two topmost values are in the order that the test wants.
template <bool (*test)(int)>
void RunCompare(Machine& machine, const Item&) {
  const Value right = machine.Pop();
  machine.Push(test(Compare(machine.Pop(), right)) ? 1.0 : 0.0);
}

bool IsEqual(int order) {
  return order == 0;
}
bool IsDifferent(int order) {
  return order != 0;
}
bool IsLess(int order) {
  return order < 0;
}
bool IsAtMost(int order) {
  return order <= 0;
}
bool IsGreater(int order) {
  return order > 0;
}
bool IsAtLeast(int order) {
  return order >= 0;
}

void RunDrop(Machine& machine, const Item&) {
  machine.Pop();
}

void RunDuplicate(Machine& machine, const Item&) {
  machine.Push(Value(machine.Top()));
}

void RunIf(Machine& machine, const Item& item) {
  if (machine.PopNumber() == 0) machine.GoTo(item.jump);
}

void RunElse(Machine& machine, const Item& item) {
  machine.GoTo(item.jump);
}

void RunNothing(Machine&, const Item&) {}

double LoopBound(const Value& value) {
  const auto* number = std::get_if<double>(&value);
  if (!number || std::trunc(*number) != *number || std::abs(*number) > kMaxLoopIndex) {
    throw Fault{"loop bound: " + FormatValue(value)};
  }
  return *number;
}

/// The bounds of "fori 0..5".
std::pair<Value, Value> WrittenBounds(const Values& arguments) {
  const auto* text = std::get_if<std::string>(&arguments.front());
  const std::size_t dots = text ? text->find("..") : std::string::npos;
  if (arguments.size() != 1 || dots == std::string::npos) {
    throw Fault{"loop bound: " + FormatValue(arguments.front())};
  }
  const auto bound = [](const std::string& part) {
    const auto number = ParseNumber(part);
    return number ? Value(*number) : Value(part);
  };
  return {bound(text->substr(0, dots)), bound(text->substr(dots + 2))};
}

void RunLoop(Machine& machine, const Item& item) {
  std::pair<Value, Value> bounds;
  if (item.arguments.empty()) {
    bounds.second = machine.Pop();
    bounds.first = machine.Pop();
  } else {
    bounds = WrittenBounds(machine.Evaluate(item.arguments));
  }
  const double first = LoopBound(bounds.first), last = LoopBound(bounds.second);
  if (first > last) {
    machine.GoTo(item.jump);
  } else {
    machine.BeginLoop(first, last);
  }
}

void RunLoopEnd(Machine& machine, const Item& item) {
  if (machine.NextIndex()) machine.GoTo(item.jump);
}

void RunLoopIndex(Machine& machine, const Item&) {
  machine.Push(machine.LoopIndex());
}

void RunVersion(Machine& machine, const Item& item) {
  const StationData& data = machine.Device().data;
  machine.PrintResult(std::string(data.model) + " Version V" + std::string(data.firmware),
                      item.joined);
}

void RunTypeAndVersion(Machine& machine, const Item& item) {
  const StationData& data = machine.Device().data;
  machine.PrintResult(std::string(data.model) + "+;V" + std::string(data.firmware), item.joined);
}

void RunAddress(Machine& machine, const Item& item) {
  machine.PrintResult(machine.Device().address + ":", item.joined);
}

void RunAddressAndName(Machine& machine, const Item& item) {
  const Station& station = machine.Device();
  machine.PrintResult(station.address + ":" + std::string(station.data.name), item.joined);
}

constexpr Word kAnybodysWords[] = {
    {"+", RunAdd},
    {"-", RunSubtract},
    {"*", RunMultiply},
    {"/", RunDivide},
    {"sqrt", RunRoot},
    {"=", RunCompare<IsEqual>},
    {"<>", RunCompare<IsDifferent>},
    {"<", RunCompare<IsLess>},
    {"<=", RunCompare<IsAtMost>},
    {">", RunCompare<IsGreater>},
    {">=", RunCompare<IsAtLeast>},
    {"dr", RunDrop},
    {"^", RunDuplicate},
    {"if", RunIf, 'i'},
    {"else", RunElse, 'e', "i"},
    {"eif", RunNothing, 0, "ie"},
    {"fori", RunLoop, 'l', {}, true},
    {"ni", RunLoopEnd, 0, "l"},
    {"i", RunLoopIndex},
    {"ver", RunVersion},
    {"ver.", RunTypeAndVersion},
    {"dir", RunAddress},
    {"dirn", RunAddressAndName},
    {"dirn_", RunAddressAndName},
};

/// Calculating and saying who one is needs no right.
constexpr auto kWords = [] {
  auto words = std::to_array(kAnybodysWords);
  for (Word& word : words) word.right = Right::kNone;
  return words;
}();

const Variable& ExistingVariable(Machine& machine, const Item& item) {
  const Variable* variable = FindVariable(machine.Device(), item.name);
  if (!variable) RunUnknown(machine, item);
  return *variable;
}

Values Read(Machine& machine, const Item& item) {
  const Variable& variable = ExistingVariable(machine, item);
  if (!variable.read) throw Fault{"write-only: " + item.name};
  return variable.read(machine.Device(), machine.Evaluate(item.arguments));
}

}  // namespace

const Word* FindWord(std::string_view name) {
  // The language first, then the commands of each subject.
  for (const WordTable& table : {WordTable(kWords), AccessWords(), EventLogWords(), FileWords()}) {
    for (const Word& word : table) {
      if (word.name == name) return &word;
    }
  }
  return nullptr;
}

void RunPush(Machine& machine, const Item& item) {
  machine.Push(item.literal);
}

void RunPrintText(Machine& machine, const Item& item) {
  machine.Print(std::get<std::string>(item.literal), item.joined);
}

void RunPrintTop(Machine& machine, const Item& item) {
  if (!machine.ResultPrintedBefore()) machine.Print(FormatValue(machine.Pop()), item.joined);
}

void RunReadAndPrint(Machine& machine, const Item& item) {
  bool joined = item.joined;
  for (const Value& value : Read(machine, item)) {
    machine.PrintResult(FormatValue(value), joined);
    joined = false;
  }
}

void RunReadAndPush(Machine& machine, const Item& item) {
  const Values values = Read(machine, item);
  // The first value comes to lie on top, so that "!" prints them in the order of a read.
  std::for_each(values.rbegin(), values.rend(), [&](const Value& value) { machine.Push(value); });
}

void RunExists(Machine& machine, const Item& item) {
  machine.Push(FindVariable(machine.Device(), item.name) ? 1.0 : 0.0);
}

void RunWrite(Machine& machine, const Item& item) {
  const Variable& variable = ExistingVariable(machine, item);
  if (!variable.write) throw Fault{"read-only: " + item.name};
  WriteRequest request;
  request.arguments = machine.Evaluate(item.arguments);
  request.values = machine.Evaluate(item.values);
  request.all = item.all;
  for (const Operand& operand : item.arguments) request.argumentTexts.push_back(operand.text);
  for (const Operand& operand : item.values) request.valueTexts.push_back(operand.text);
  variable.write(machine.Device(), request);
}

void RunUnknown(Machine&, const Item& item) {
  ThrowUnknown(item.name);
}

void ThrowUnknown(std::string_view name) {
  constexpr std::size_t kMaxQuoted = 40;
  // What stands behind a blank may be a password.
  name = name.substr(0, name.find_first_of(" \t"));
  throw Fault{"unknown: " + std::string(name.substr(0, kMaxQuoted))};
}

}  // namespace ostrel::simulator
