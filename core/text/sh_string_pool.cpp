// ShStringPool: short shared strings packed into common blocks.
#include <zel/text/shstring.h>

#include <climits>
#include <cstring>

namespace zel {

ShStringPool::ShStringPool(int block_size, int growth)
    : next_block_size_(block_size), growth_(growth) {}

shstring ShStringPool::Add(const strptr &text) {
  const int needed = text.length() + 1;  // with room for a NUL
  if (used_ + needed > block_.length()) {
    block_.NewEmptyString(next_block_size_ > needed ? next_block_size_ : needed);
    const int64_t next = int64_t{next_block_size_} * growth_;
    next_block_size_ = next > INT_MAX ? INT_MAX : static_cast<int>(next);
    used_ = 0;
  }
  char *at = block_.buffer_->chars() + used_;
  if (text.length() > 0) std::memcpy(at, text.text(), static_cast<size_t>(text.length()));
  at[text.length()] = 0;
  used_ += needed;
  shstring added;
  added.Share(block_.buffer_, at, text.length());
  return added;
}

}  // namespace zel
