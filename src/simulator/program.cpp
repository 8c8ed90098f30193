#include "simulator/program.h"

#include <algorithm>
#include <utility>

namespace ostrel::simulator {

namespace {

constexpr std::size_t kMaxNesting = 16;
constexpr std::size_t kCharactersPerStep = 64;
// Comparing versions must not take long, however often a loop does it.
constexpr std::size_t kMaxVersionLength = 32;

/// How the end of a name says what is done with the variable.
struct Suffix {
  std::string_view text;
  Run run;
};
constexpr Suffix kSuffixes[] = {
    {"?-", RunExists},
    {"#", RunReadAndPrint},
    {"-", RunReadAndPush},
};

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The first of these characters outside double quotes, or the end.
std::size_t FindOutsideQuotes(std::string_view text, std::string_view wanted) {
  bool quoted = false;
  for (std::size_t n = 0; n < text.size(); ++n) {
    if (text[n] == '"') quoted = !quoted;
    if (!quoted && wanted.find(text[n]) != std::string_view::npos) return n;
  }
  if (quoted) throw Fault{"missing \""};
  return text.size();
}

/// Cuts at a separator outside quotes; gives the trimmed front part and keeps the rest.
std::string_view TakeUntil(std::string_view& text, std::string_view separators) {
  const std::size_t end = FindOutsideQuotes(text, separators);
  const std::string_view part = TrimBlanks(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

bool IsQuoted(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.find('"', 1) == text.size() - 1;
}

std::string Unquote(std::string_view text) {
  return std::string(text.substr(1, text.size() - 2));
}

bool IsDottedVersion(std::string_view text) {
  return text.size() <= kMaxVersionLength && text.front() >= '0' && text.front() <= '9' &&
         text.find_first_not_of("0123456789.") == std::string_view::npos;
}

Operand ParseOperand(std::string_view text) {
  Operand operand;
  operand.text = text;
  if (IsQuoted(text)) {
    operand.literal = Unquote(text);
  } else if (text == "i" || text == "I") {
    operand.kind = Operand::Kind::kLoopIndex;
  } else if (text == ".") {
    operand.kind = Operand::Kind::kTopOfStack;
  } else if (const auto number = ParseNumber(text)) {
    operand.literal = *number;
  } else {
    operand.literal = LowerCase(text);
  }
  return operand;
}

std::vector<Operand> ParseOperands(std::string_view text) {
  std::vector<Operand> operands;
  for (text = TrimBlanks(text); !text.empty(); text = TrimBlanks(text)) {
    operands.push_back(ParseOperand(TakeUntil(text, " \t")));
  }
  return operands;
}

/// "!", "!+", and both with a text behind them.
Item ParsePrint(std::string_view text) {
  Item item;
  item.run = RunPrintTop;
  item.name = "!";
  std::string_view rest = text.substr(1);
  if (rest.starts_with('+')) {
    item.joined = true;
    rest.remove_prefix(1);
  }
  rest = TrimBlanks(rest);
  if (rest.empty()) return item;
  item.run = IsQuoted(rest) ? RunPrintText : RunUnknown;
  item.name = text;
  if (IsQuoted(rest)) item.literal = Unquote(rest);
  return item;
}

void ParseWord(Item& item) {
  item.word = FindWord(item.name);
  const bool fits = item.word && (item.arguments.empty() || item.word->takesArguments);
  item.run = fits ? item.word->run : RunUnknown;
}

/// "name *" and "name*" list all elements of a variable, as "name# *" does.
void ParseListing(Item& item) {
  constexpr std::string_view kAll = "*";
  if (item.name.ends_with(kAll) && item.arguments.empty()) {
    item.name.pop_back();
    item.arguments.push_back(ParseOperand(kAll));
  }
  if (item.arguments.size() == 1 && item.arguments.front().text == kAll) item.run = RunReadAndPrint;
}

/// A name, what its end asks for, and its arguments.
Item ParseNamed(std::string_view text) {
  Item item;
  const std::size_t nameEnd = FindOutsideQuotes(text, " \t=");
  std::string_view name = text.substr(0, nameEnd);
  std::string_view rest = text.substr(nameEnd);
  const std::size_t assignment = FindOutsideQuotes(rest, "=");
  item.arguments = ParseOperands(rest.substr(0, assignment));
  if (assignment < rest.size()) {
    item.all = name.ends_with('*');
    if (item.all) name.remove_suffix(1);
    item.name = LowerCase(name);
    item.values = ParseOperands(rest.substr(assignment + 1));
    item.run = RunWrite;
    return item;
  }
  item.joined = name.ends_with('+');
  if (item.joined) name.remove_suffix(1);
  for (const Suffix& suffix : kSuffixes) {
    if (!name.ends_with(suffix.text)) continue;
    item.name = LowerCase(name.substr(0, name.size() - suffix.text.size()));
    item.run = suffix.run;
    return item;
  }
  item.name = LowerCase(name);
  ParseWord(item);
  if (!item.word) ParseListing(item);
  return item;
}

Item ParseItem(std::string_view text) {
  if (text.front() == '!') return ParsePrint(text);
  if (IsLetter(text.front())) return ParseNamed(text);
  Item item;
  item.name = text;
  if (IsQuoted(text)) {
    item.run = RunPrintText;
    item.literal = Unquote(text);
  } else if (const auto number = ParseNumber(text)) {
    item.run = RunPush;
    item.literal = *number;
  } else if (IsDottedVersion(text)) {
    item.run = RunPush;
    item.literal = std::string(text);
  } else {
    ParseWord(item);
  }
  return item;
}

std::string MissingEnd(const Item& item) {
  return item.word->opens == 'l' ? "missing ni" : "missing eif";
}

/// Gives every word that opens or closes a block the place where its counterpart stands.
void LinkBlocks(Program& program) {
  std::vector<std::size_t> open;
  for (std::size_t n = 0; n < program.size(); ++n) {
    const Word* word = program[n].word;
    if (!word) continue;
    if (!word->closes.empty()) {
      if (open.empty()) throw Fault{"unexpected " + program[n].name};
      Item& opener = program[open.back()];
      if (word->closes.find(opener.word->opens) == std::string_view::npos) {
        throw Fault{MissingEnd(opener)};
      }
      opener.jump = n + 1;
      program[n].jump = open.back() + 1;
      open.pop_back();
    }
    if (word->opens != 0) open.push_back(n);
    if (open.size() > kMaxNesting) throw Fault{"nested too deep"};
  }
  if (!open.empty()) throw Fault{MissingEnd(program[open.back()])};
}

}  // namespace

Program ParseProgram(std::string_view expression) {
  if (expression.size() > kMaxLine) throw Fault{"line too long"};
  if (expression.find_first_of("\r\n\x1a") != std::string_view::npos) {
    throw Fault{"character not allowed"};
  }
  expression = TrimBlanks(expression);
  if (expression.starts_with(';')) expression.remove_prefix(1);
  Program program;
  while (!expression.empty()) {
    const std::string_view text = TakeUntil(expression, ",");
    if (text.empty()) continue;
    program.push_back(ParseItem(text));
    program.back().steps += text.size() / kCharactersPerStep;
  }
  LinkBlocks(program);
  return program;
}

}  // namespace ostrel::simulator
