#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/error.h"

namespace ostrel {

class Link;
class Session;

/// The right to ask a station. Only Session gives it, after it opened a lost link again and made
/// sure who answers. It holds an address and the selection it was given for: once another device is
/// selected, it sends nothing any more.
class Reading {
 public:
  /// Sends a line with the address before it and waits for the answer. What fails is shown; an
  /// error answer of the device is a failure.
  std::optional<std::string> Ask(std::string_view line) const;
  /// The same, silently; an error answer is an answer.
  Answer Try(std::string_view line) const;
  /// The same with the line as it stands, for whoever addresses stations directly.
  std::optional<std::string> AskBare(std::string_view line) const;
  Answer TryBare(std::string_view line) const;
  /// Whether that is an answer, and no error of the device; what failed is shown.
  bool Passes(const Answer& answer, std::string_view line) const;
  /// The address with its ":"; empty for a token without one.
  const std::string& Address() const { return address_; }
  /// Another answer time-out while it lives.
  class TimeoutFor {
   public:
    TimeoutFor(Link& link, int seconds);
    ~TimeoutFor();
    TimeoutFor(const TimeoutFor&) = delete;
    TimeoutFor& operator=(const TimeoutFor&) = delete;

   private:
    Link& link_;
    int earlier_;
  };
  [[nodiscard]] TimeoutFor Timeout(int seconds) const;

 protected:
  friend class Session;
  enum class Right { kRead, kWrite };
  Reading(Session& session, std::string address, Right right);

  Session* session_;
  std::string address_;
  int selection_;  // the number of the selection for which it was given
  Right right_;
};

/// The right to change something on a station; refused while another device answers than the
/// selected one.
class Writing : public Reading {
 public:
  /// Ask without its answer; false when it failed.
  bool Send(std::string_view line) const { return Ask(line).has_value(); }
  /// Sends a block of lines, with the address and ";" before each, silently; stops at the first
  /// that fails.
  bool SendBlock(std::string lines) const;
  /// Hands the line over and waits for nothing; false when it could not be, which is shown.
  bool SendOnly(std::string_view line) const;

 private:
  friend class Session;
  using Reading::Reading;
};

/// One station on a link of its own, beside whatever else the program does. It belongs to that
/// station: another selection does not touch it. Nothing is shown.
class OwnLine {
 public:
  ~OwnLine();
  OwnLine(const OwnLine&) = delete;
  OwnLine& operator=(const OwnLine&) = delete;

  /// Sends a line with the station's address before it. After a loss the line is opened again first
  /// and the station compared; text::kOtherDevice when another one answers.
  Answer Try(std::string_view line);
  /// Address and name of the station.
  const std::string& KennName() const { return station_.kennName; }
  /// Ends the wait that is going on and every later one.
  void GiveUp();

 private:
  friend class Session;
  struct Station {
    std::string kennName, typ, serial;
  };
  OwnLine(std::unique_ptr<Link> link, std::string connection, Station station);
  Error Open();
  Error MakeSure();

  std::unique_ptr<Link> link_;
  std::string connection_;
  Station station_;
};

/// The locked online channel of the device's connection. While it lives the device's bytes come as
/// they are, and no line of any program reaches the connection.
class Online {
 public:
  ~Online();
  Online(const Online&) = delete;
  Online& operator=(const Online&) = delete;

  /// Bytes out as they stand.
  Error Send(const std::string& bytes);
  /// All bytes that came in since the last time; often none.
  Answer Receive();

 private:
  friend class Session;
  Online(Link& link, int channel) : link_(link), channel_(channel) {}

  Link& link_;
  int channel_;
};

}  // namespace ostrel
