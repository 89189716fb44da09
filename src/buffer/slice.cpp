#include "buffer/slice.h"

#include <algorithm>
#include <limits>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepStringType;

constexpr std::u16string_view kClass = u"ZepVariant";

std::int32_t Checked(std::int64_t number) {
  if (number > std::numeric_limits<std::int32_t>::max() ||
      number < std::numeric_limits<std::int32_t>::min()) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow, kClass);
  }
  return static_cast<std::int32_t>(number);
}

bool IsTwoBytesEach(ZepStringType type) {
  if (type != zepSTAscii && type != zepSTAnsi && type != zepSTUnicode) {
    RaiseZepError(ZepErrors::zepErrUnexpected, kClass);
  }
  return type == zepSTUnicode;
}

}  // namespace

bool IsWithin(const Slice& slice, std::int32_t count) {
  return slice.start >= 1 && slice.length >= 0 &&
         std::int64_t{slice.start} - 1 + slice.length <= count;
}

Slice ToBytes(const Slice& characters, ZepStringType type) {
  if (!IsTwoBytesEach(type)) return characters;
  return {Checked(std::int64_t{2} * characters.start - 1),
          Checked(std::int64_t{2} * characters.length)};
}

Slice Clamp(const Slice& slice, std::int32_t count) {
  const std::int32_t start = std::max(1, std::min(slice.start, count));
  return {start, std::min(slice.length, count - start + 1)};
}

Edit InParent(const Edit& edit, const Slice& slice) {
  return {slice.start - 1 + edit.start, edit.old_length, edit.new_length};
}

Edit InView(const Edit& edit, const Slice& before, const Slice& after) {
  if (before.start != after.start) return {1, before.length, after.length};
  const bool moves = edit.old_length != edit.new_length || before.length != after.length;
  const std::int32_t kept = std::min(
      {std::max(edit.start - before.start, 0), before.length, after.length});  // in front of it
  if (moves) return {kept + 1, before.length - kept, after.length - kept};
  const std::int64_t end = std::min<std::int64_t>(
      std::int64_t{edit.start} - before.start + edit.new_length, after.length);
  const std::int32_t length = std::max(static_cast<std::int32_t>(end) - kept, 0);
  return {kept + 1, length, length};
}

void Replace(Bytes& data, const Slice& slice, std::span<const std::uint8_t> bytes) {
  const auto begin = data.begin() + (slice.start - 1);
  const auto old_length = static_cast<std::size_t>(slice.length);
  const std::size_t common = std::min(old_length, bytes.size());
  if (bytes.size() > old_length) {  // first, because it may fail
    data.insert(begin + slice.length, bytes.begin() + slice.length, bytes.end());
  } else {
    data.erase(begin + static_cast<std::ptrdiff_t>(common), begin + slice.length);
  }
  std::copy_n(bytes.begin(), common, data.begin() + (slice.start - 1));
}

std::int32_t CharacterCount(std::int32_t byte_count, ZepStringType type) {
  if (!IsTwoBytesEach(type)) return byte_count;
  const std::int32_t half = byte_count / 2;
  return byte_count % 2 == 0 ? half : half + half % 2;
}

std::int32_t ByteCount(std::int32_t character_count, ZepStringType type) {
  return IsTwoBytesEach(type) ? Checked(std::int64_t{2} * character_count) : character_count;
}

}  // namespace zepkit10
