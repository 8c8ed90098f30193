#pragma once

#include <QByteArray>
#include <optional>
#include <variant>

#include "server/json_rpc.h"

namespace ostrel {

/// Cuts the bytes of one client into requests, a line each. Empty lines count for nothing.
class RequestReader {
 public:
  using Item = std::variant<rpc::Request, rpc::Refusal>;

  /// The longest line that is read, in bytes, its line feed not counted.
  explicit RequestReader(qsizetype longest = rpc::kMaxRequest) : longest_(longest) {}

  /// Takes bytes in any portions.
  void Add(const QByteArray& bytes);
  /// The next request, or why a line is none, of which nothing is left here; empty when it needs
  /// more bytes. Then no more than the longest line is kept. A line that is too long is refused
  /// once, as soon as that is known.
  std::optional<Item> Next();
  /// The bytes that have not become requests yet.
  qsizetype Kept() const { return buffer_.size() - from_; }

 private:
  std::optional<Item> Unfinished();
  rpc::Refusal TooLong() const;

  qsizetype longest_;
  QByteArray buffer_;
  qsizetype from_ = 0;      // where the next line begins
  qsizetype searched_ = 0;  // up to here there is no line feed behind from_
  bool skipping_ = false;   // the rest of a line that was too long
};

}  // namespace ostrel
