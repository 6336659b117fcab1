#include "link/replybuffer.h"

namespace spectrane {

void ReplyBuffer::Add(std::string_view piece) {
  if (piece.size() > kLimit - text_.size()) {
    overflown_ = true;
    piece = piece.substr(0, kLimit - text_.size());
  }
  text_ += piece;
}

void ReplyBuffer::Clear() {
  text_.clear();
  overflown_ = false;
}

}  // namespace spectrane
