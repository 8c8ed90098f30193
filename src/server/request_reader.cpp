#include "server/request_reader.h"

#include <string.h>

#include <QByteArrayView>
#include <utility>

namespace ostrel {

void RequestReader::Add(const QByteArray& bytes) {
  buffer_.remove(0, from_);
  searched_ -= std::exchange(from_, 0);
  buffer_ += bytes;
}

std::optional<RequestReader::Item> RequestReader::Next() {
  for (;;) {
    const qsizetype end = buffer_.indexOf('\n', searched_);
    if (end < 0) return Unfinished();
    const qsizetype length = end - from_;
    char* const line = buffer_.data() + from_;
    from_ = searched_ = end + 1;
    if (std::exchange(skipping_, false)) continue;
    if (length > longest_) return TooLong();
    if (QByteArrayView(line, length).trimmed().isEmpty()) continue;
    // The parser copies what it keeps.
    Item item = rpc::Parse(QByteArray::fromRawData(line, length));
    explicit_bzero(line, static_cast<std::size_t>(length));  // there may be a password in it
    return item;
  }
}

std::optional<RequestReader::Item> RequestReader::Unfinished() {
  searched_ = buffer_.size();
  const bool tooLong = !skipping_ && searched_ - from_ > longest_;
  skipping_ = skipping_ || tooLong;
  if (skipping_ || from_ == searched_) {
    buffer_.clear();  // and gives its memory back
    from_ = searched_ = 0;
  }
  if (!tooLong) return std::nullopt;
  return TooLong();
}

rpc::Refusal RequestReader::TooLong() const {
  const std::string limit = std::to_string(longest_);
  return {{}, rpc::kInvalidRequest, "the request is longer than " + limit + " bytes"};
}

}  // namespace ostrel
