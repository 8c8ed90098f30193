#include "simulator/file_store.h"

#include <algorithm>
#include <optional>

#include "simulator/machine.h"
#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::size_t kMaxName = 12;
constexpr std::string_view kNameCharacters = "abcdefghijklmnopqrstuvwxyz0123456789._";
// These names belong to the data log.
constexpr std::string_view kLog = "log", kLogHeader = "log.h";

/// The name among arguments, in lower case.
std::string NameAt(const Values& arguments, std::size_t place) {
  if (place >= arguments.size()) throw Fault{"file name is missing"};
  const std::string name = LowerCase(FormatValue(arguments[place]));
  const bool valid = !name.empty() && name.size() <= kMaxName &&
                     name.find_first_not_of(kNameCharacters) == std::string::npos;
  if (!valid) throw Fault{"file name not allowed"};
  return name;
}

std::string PartOf(const Station& station, const std::string& name, std::size_t from,
                   std::size_t count) {
  const auto part = [&](const std::string& content) {
    return content.substr(std::min(from, content.size()), count);
  };
  if (name == kLogHeader && station.dataLog) return part(station.dataLog->Header());
  if (const std::string* content = station.files.Find(name)) return part(*content);
  throw Fault{"no such file"};
}

double LogNumber(const DataLog& log, const Values& arguments) {
  if (arguments.size() < 2) return static_cast<double>(log.Size());
  const std::string which = FormatValue(arguments[1]);
  if (which == "fi") return log.First();
  if (which == "li") return log.Last();
  if (which == "mr") return log.Capacity();
  ThrowUnknown(which);
}

/// "fsize# NAME" in bytes, -1 where there is no such file; "fsize# log fi|li|mr" of the data log.
Values ReadSize(Station& station, const Values& arguments) {
  const std::string name = NameAt(arguments, 0);
  if (name == kLog && station.dataLog) return {LogNumber(*station.dataLog, arguments)};
  if (name == kLogHeader && station.dataLog) {
    return {static_cast<double>(station.dataLog->Header().size())};
  }
  const std::string* content = station.files.Find(name);
  return {content ? static_cast<double>(content->size()) : -1.0};
}

void CreateFile(Station& station, const WriteRequest& request) {
  const std::string name = NameAt(request.values, 0);
  if (name == kLog || name == kLogHeader) throw Fault{"file name not allowed"};
  station.files.Create(name);
}

void DeleteFile(Station& station, const WriteRequest& request) {
  station.files.Delete(NameAt(request.values, 0));
}

/// The value of a hexadecimal digit; nothing for another character.
std::optional<unsigned> DigitValue(char c) {
  constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
  const std::size_t place = kDigits.find(c);
  if (place == std::string_view::npos) return std::nullopt;
  return static_cast<unsigned>(place % 16);
}

std::string BytesOfHex(std::string_view hex) {
  std::string bytes;
  for (std::size_t n = 0; n < hex.size(); n += 2) {
    const auto high = DigitValue(hex[n]);
    const auto low = n + 1 < hex.size() ? DigitValue(hex[n + 1]) : std::nullopt;
    if (!high || !low) throw Fault{"not hexadecimal"};
    bytes += static_cast<char>(*high * 16 + *low);
  }
  return bytes;
}

/// "fapph NAME HEXBYTES"
void RunAppendBytes(Machine& machine, const Item& item) {
  if (item.arguments.size() != 2) throw Fault{"name and bytes expected"};
  machine.Device().files.Append(NameAt(machine.Evaluate(item.arguments), 0),
                                BytesOfHex(item.arguments[1].text));
}

/// "fapps_ NAME "text"": the text and a line end.
void RunAppendLine(Machine& machine, const Item& item) {
  const auto text =
      item.arguments.size() == 2 ? ReadQuotedText(item.arguments[1].text) : std::nullopt;
  if (!text) throw Fault{"name and text expected"};
  machine.Device().files.Append(NameAt(machine.Evaluate(item.arguments), 0), *text + "\r\n");
}

/// "fread. NAME FROM COUNT": characters from a place on, as many as there are; "*" = all.
void RunReadText(Machine& machine, const Item& item) {
  const Values arguments = machine.Evaluate(item.arguments);
  constexpr int kMost = FileStore::kMaxBytes;
  const std::size_t from = IntegerArgument(arguments, 1, 0, kMost);
  const bool all = arguments.size() > 2 && arguments[2] == Value(std::string("*"));
  const std::size_t count = all ? kMost : IntegerArgument(arguments, 2, 0, kMost);
  std::string part = PartOf(machine.Device(), NameAt(arguments, 0), from, count);
  // Other control characters would end the reply.
  const auto breaksReply = [](char c) {
    return static_cast<unsigned char>(c) < ' ' && c != '\r' && c != '\n' && c != '\t';
  };
  std::replace_if(part.begin(), part.end(), breaksReply, '.');
  machine.PrintResult(part, item.joined);
}

constexpr Variable kVariables[] = {
    {"fsize", Always, ReadSize, nullptr},
    {"fcreate!", Always, nullptr, CreateFile},
    {"fdelete!", Always, nullptr, DeleteFile},
};

constexpr Word kWords[] = {
    {.name = "fapph", .run = RunAppendBytes, .takesArguments = true, .right = Right::kWrite},
    {.name = "fapps_", .run = RunAppendLine, .takesArguments = true, .right = Right::kWrite},
    {.name = "fread.", .run = RunReadText, .takesArguments = true},
};

}  // namespace

void FileStore::Create(const std::string& name) {
  if (files_.size() >= kMaxFiles && !files_.contains(name)) throw Fault{"too many files"};
  files_[name].clear();
}

void FileStore::Append(const std::string& name, std::string_view bytes) {
  const auto file = files_.find(name);
  if (file == files_.end()) throw Fault{"no such file"};
  if (bytes.size() > kMaxBytes - file->second.size()) throw Fault{"file full"};
  file->second += bytes;
}

void FileStore::Delete(const std::string& name) {
  if (files_.erase(name) == 0) throw Fault{"no such file"};
}

const std::string* FileStore::Find(const std::string& name) const {
  const auto file = files_.find(name);
  return file == files_.end() ? nullptr : &file->second;
}

VariableTable FileVariables() {
  return kVariables;
}

WordTable FileWords() {
  return kWords;
}

}  // namespace ostrel::simulator
