// Slices and edits of buffers. First come numbers of any value, for what is computed of slices;
// then a buffer, a view of it and a view of that, and edits of any of the three: what takes over
// only the edits it is told must show what one that copies all would show.
#include <cmath>
#include <cstdint>

#include "buffer/slice.h"
#include "doc/progress.h"
#include "fuzz/expect.h"
#include "fuzz/input.h"
#include "unit/buffer/naive_buffer.h"

namespace {

using namespace zepkit10;
using enum ZepStringType;

/// The number of the failure that a call raises, 0 if there is none.
template <class Call>
std::int32_t FailureOf(Call call) {
  try {
    call();
    return 0;
  } catch (const Failure& failure) {
    return failure.number;
  }
}

void CheckNumbers(Input& input) {
  const Slice slice{input.Any<std::int32_t>(), input.Any<std::int32_t>()};
  const auto count = static_cast<std::int32_t>(input.Any<std::uint32_t>() >> 1);
  const auto type = static_cast<ZepStringType>(input.UpTo(3));
  const double start = slice.start, length = slice.length;
  Expect(IsWithin(slice, count) == (start > 0 && length >= 0 && start + length <= count + 1.0),
         "within");

  const bool wide = type == zepSTUnicode;
  const bool none = type != zepSTAscii && type != zepSTAnsi && !wide;
  const std::int32_t unexpected = static_cast<std::int32_t>(ZepErrors::zepErrUnexpected);
  const auto fits = [](double number) { return std::fabs(number + 0.5) < 2147483648.0; };
  const bool doubled = !wide || (fits(2 * start - 1) && fits(2 * length));
  const std::int32_t error = none ? unexpected : doubled ? 0 : 6;
  Expect(FailureOf([&] { ToBytes(slice, type); }) == error, "error of slices");
  if (error == 0) {
    const Slice bytes = ToBytes(slice, type);
    Expect(bytes.start == (wide ? 2 * start - 1 : start), "start of the bytes");
    Expect(bytes.length == (wide ? 2 * length : length), "length of the bytes");
  }
  if (none) return;
  Expect(CharacterCount(count, type) == (wide ? std::nearbyint(count / 2.0) : count), "characters");
  Expect((FailureOf([&] { ByteCount(count, type); }) == 6) == (wide && !fits(2.0 * count)),
         "error of bytes");
  if (!wide || fits(2.0 * count)) {
    Expect(ByteCount(count, type) == (wide ? 2.0 * count : count), "bytes");
  }
}

void CheckProgress(Input& input) {
  const auto done = static_cast<std::int32_t>(input.Any<std::uint32_t>() >> 1);
  const auto whole = static_cast<std::int32_t>(input.Any<std::uint32_t>() >> 1);
  if (whole == 0) return;
  Expect((FailureOf([&] { PercentageDone(done, whole); }) == 6) == (100.0 * done > 2147483647.0),
         "error of progress");
  if (100.0 * done > 2147483647.0) return;
  Expect(PercentageDone(done, whole) == static_cast<float>(100.0 * done / whole), "percentage");
}

/// A buffer and views in it, the outermost first.
struct Chain {
  static constexpr int kCount = 3;
  Bytes data[kCount];
  Slice range[kCount]{};  // of a view in what it shows

  Bytes Shown(int view) const { return naive::Part(data[view - 1], range[view]); }
};

Slice SliceOf(const Bytes& data, Input& input) {
  const auto count = static_cast<int>(data.size());
  const int before = input.UpTo(count);
  return {before + 1, input.UpTo(count - before)};
}

void CheckClamp(const Slice& before, const Slice& after, std::int32_t count) {
  Expect(IsWithin(after, count), "clamped outside");
  if (before.start <= count) {
    Expect(after.start == before.start, "clamped elsewhere");
    const std::int32_t left = count - before.start + 1;
    Expect(after.length == (before.length < left ? before.length : left), "clamped too far");
  }
}

void EditBuffer(Chain& chain, Input& input) {
  const int edited = input.UpTo(Chain::kCount - 1);
  const Slice slice = SliceOf(chain.data[edited], input);
  Bytes bytes(static_cast<std::size_t>(input.UpTo(6)));
  for (auto& byte : bytes) byte = input.Any<std::uint8_t>();
  const Bytes expected = naive::Replaced(chain.data[edited], slice, bytes);
  Replace(chain.data[edited], slice, bytes);
  Expect(chain.data[edited] == expected, "replaced otherwise");

  const Edit first{slice.start, slice.length, static_cast<std::int32_t>(bytes.size())};
  Edit edit = first;
  for (int view = edited; view > 0; --view) {
    const Bytes& shown = chain.data[view];
    Bytes& parent = chain.data[view - 1];
    const Bytes whole = naive::Replaced(parent, chain.range[view], shown);
    const Bytes changed = naive::Part(shown, {edit.start, edit.new_length});
    edit = InParent(edit, chain.range[view]);
    Replace(parent, {edit.start, edit.old_length}, changed);
    Expect(parent == whole, "a parent shows something else");
    chain.range[view].length = static_cast<std::int32_t>(shown.size());
  }
  edit = first;
  for (int view = edited + 1; view < Chain::kCount; ++view) {
    const auto count = static_cast<std::int32_t>(chain.data[view - 1].size());
    const Slice before = chain.range[view], after = Clamp(before, count);
    CheckClamp(before, after, count);
    chain.range[view] = after;
    edit = InView(edit, before, after);
    const Bytes shown = chain.Shown(view);
    Replace(chain.data[view], {edit.start, edit.old_length},
            naive::Part(shown, {edit.start, edit.new_length}));
    Expect(chain.data[view] == shown, "a view shows something else");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  CheckNumbers(input);
  CheckProgress(input);
  Chain chain;
  chain.data[0].resize(static_cast<std::size_t>(input.UpTo(20)));
  for (auto& byte : chain.data[0]) byte = input.Any<std::uint8_t>();
  for (int view = 1; view < Chain::kCount; ++view) {
    chain.range[view] = SliceOf(chain.data[view - 1], input);
    chain.data[view] = chain.Shown(view);
  }
  // A buffer grows by six bytes an edit and stays below 256.
  for (int edits = 0; edits < 36 && !input.AtEnd(); ++edits) EditBuffer(chain, input);
  return 0;
}
