#include "buffer/zep_variant_object.h"

#include <limits>

#include "buffer/buffer_queue_object.h"
#include "buffer/ripple_object.h"
#include "frame/shared_library_object.h"
#include "platform/automation/array_access.h"
#include "platform/text_bytes.h"

namespace zepkit10 {
namespace {

using enum ZepErrors;
using enum ZepStringType;

ZepVariant& Require(::_ZepVariant* pointer) {
  if (!pointer) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrObjectVariableNotSet);
  ZepVariant* buffer = ZepVariant::From(pointer);
  if (!buffer) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  return *buffer;
}

constexpr std::size_t kMaxLength = std::numeric_limits<std::int32_t>::max();

Bytes CopyOf(SAFEARRAY* array) {
  VARTYPE type = VT_UI1;
  if (array && (FAILED(SafeArrayGetVartype(array, &type)) || type != VT_UI1)) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  }
  const ArrayAccess bytes(array);
  if (bytes.IsEmpty()) return {};
  if (bytes.Count() > kMaxLength) throw std::bad_alloc();
  const auto* first = static_cast<const std::uint8_t*>(bytes.At(bytes.LowerBound()));
  return Bytes(first, first + bytes.Count());
}

SafeArray ArrayOf(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return {};
  SafeArray array = SafeArray::Create(VT_UI1, 1, static_cast<ULONG>(bytes.size()));
  CopyMemory(array.Elements<void>(), bytes.data(), bytes.size());
  return array;
}

/// How many bytes a text becomes. Error 6 where no buffer can have so many.
std::size_t LengthOf(std::u16string_view text, ZepStringType type) {
  const std::size_t length = EncodedSize(text, type);
  if (length > kMaxLength) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  return length;
}

Bytes Encoded(std::u16string_view text, ZepStringType type) {
  Bytes bytes(LengthOf(text, type));
  Encode(text, type, bytes.data());
  return bytes;
}

}  // namespace

ZepVariant::ZepVariant() : AutomationObject(&events_), queue_(GetBufferQueue()) {}

ZepVariant::~ZepVariant() {
  if (link_) Break(*link_);
  while (!views_.empty()) Break(*views_.front());
}

void ZepVariant::SetByteLength(std::int32_t NewByteLength) {
  EnsureWritable();
  if (NewByteLength < 0) Raise(zepErrBadPropValue);
  Resize(NewByteLength);
}

void ZepVariant::ConnectAsRange(::_ZepVariant* Parent, std::int32_t Start, std::int32_t Length,
                                bool ByteCoordinates) {
  if (link_) Raise(zepErrBadCallContext);
  EnsureWritable();
  const Ref<ZepVariant> parent(&Require(Parent));
  parent->RegisterRange(*this, {Start, Length}, ByteCoordinates);
  is_range_ = true;
}

Unguarded<std::uint8_t> ZepVariant::DataByte(std::int32_t Index) const {
  if (Index < 1 || Index > ByteLength()) Raise(zepErrBadCall);
  return data_[static_cast<std::size_t>(Index) - 1];
}

void ZepVariant::SetDataByte(std::int32_t Index, std::uint8_t NewDataByte) {
  EnsureWritable();
  if (Index < 1) Raise(zepErrUnexpected);
  Ripple ripple(*this);
  const std::int32_t old_length = ByteLength();
  GrowTo(Index);
  data_[static_cast<std::size_t>(Index) - 1] = NewDataByte;
  if (Index > old_length) {
    Announce(ripple, {old_length + 1, 0, Index - old_length});
  } else {
    Announce(ripple, {Index, 1, 1});
  }
}

SafeArray ZepVariant::DataBytes() const { return ArrayOf(data_); }

void ZepVariant::SetDataBytes(SAFEARRAY* NewDataBytes) {
  EnsureWritable();
  SetData(CopyOf(NewDataBytes));
}

Bstr ZepVariant::DataString() const { return Decode(data_, string_type_); }

void ZepVariant::SetDataString(std::u16string_view NewDataString) {
  EnsureWritable();
  Ripple ripple(*this);
  const std::int32_t old_length = ByteLength();
  Encode(NewDataString, string_type_, Renew(LengthOf(NewDataString, string_type_)));
  Announce(ripple, {1, old_length, ByteLength()});
}

void ZepVariant::DisconnectAsRange() {
  if (!is_range_) Raise(zepErrBadCallContext);
  const Ref<ZepVariant> parent(link_->parent);
  const Posting posting(queue_, u"disconnectMe", *this, *parent);
  Break(*link_);
}

void ZepVariant::DisconnectRange(::_ZepVariant* Range) {
  ZepVariant* view = From(Range);
  if (!view || !view->link_ || view->link_->parent != this) Raise(zepErrBadCall);
  view->DisconnectAsRange();
}

void ZepVariant::DisconnectRanges() {
  const std::vector<std::shared_ptr<RangeLink>> links(views_.begin(), views_.end());
  for (const auto& link : links) {
    if (!link->view || !link->view->is_range_) continue;
    const Posting posting(queue_, u"disconnectYou", *this, *link->view);
    link->view->DisconnectAsRange();
  }
}

Ref<ZepVariant> ZepVariant::Range(std::int32_t Start, std::int32_t Length, bool ByteCoordinates) {
  auto range = Make<ZepVariant>();
  try {
    range->ConnectAsRange(Abi(), Start, Length, ByteCoordinates);
  } catch (...) {
    Raise(zepErrBadCall);
  }
  return range;
}

void ZepVariant::SetRange(std::int32_t Start, std::int32_t Length, bool ByteCoordinates,
                          ::_ZepVariant* NewRange) {
  EnsureWritable();
  Bytes bytes = Require(NewRange).data_;
  const auto range = Make<ZepVariant>();
  range->ConnectAsRange(Abi(), Start, Length, ByteCoordinates);
  range->SetData(std::move(bytes));
}

SafeArray ZepVariant::RangeBytes(std::int32_t Start, std::int32_t Length) const {
  EnsureWithin({Start, Length});
  return ArrayOf(BytesIn({Start, Length}));
}

void ZepVariant::SetRangeBytes(std::int32_t Start, std::int32_t Length, SAFEARRAY* NewRangeBytes) {
  EnsureWritable();
  EnsureWithin({Start, Length});
  ReplaceSlice({Start, Length}, CopyOf(NewRangeBytes));
}

Bstr ZepVariant::RangeString(std::int32_t Start, std::int32_t Length) const {
  return Decode(BytesIn(BytesOfCharacters({Start, Length})), string_type_);
}

void ZepVariant::SetRangeString(std::int32_t Start, std::int32_t Length,
                                std::u16string_view NewRangeString) {
  EnsureWritable();
  ReplaceSlice(BytesOfCharacters({Start, Length}), Encoded(NewRangeString, string_type_));
}

void ZepVariant::SetReadOnly(bool NewReadOnly) {
  if (NewReadOnly == read_only_) return;
  bool cancel = false;
  events_.BeforeROChange(NewReadOnly, cancel);
  if (cancel) Raise(zepErrCallRefused);
  read_only_ = NewReadOnly;
  events_.ROChanged(NewReadOnly);
}

void ZepVariant::SetStringLength(std::int32_t NewStringLength) {
  EnsureWritable();
  if (NewStringLength < 0) Raise(zepErrBadPropValue);
  if (NewStringLength == 0) return Resize(0);
  Ripple ripple(*this);
  const std::int32_t old_length = ByteLength();
  GrowTo(ByteCount(NewStringLength, string_type_));
  Announce(ripple, {old_length + 1, 0, ByteLength() - old_length});
}

void ZepVariant::SetStringType(ZepStringType NewStringType) {
  if (NewStringType != zepSTAscii && NewStringType != zepSTAnsi && NewStringType != zepSTUnicode) {
    Raise(zepErrBadPropValue);
  }
  string_type_ = NewStringType;
}

void ZepVariant::SetData(Bytes data) {
  EnsureWritable();
  Ripple ripple(*this);
  const std::int32_t old_length = ByteLength();
  data_ = std::move(data);
  Announce(ripple, {1, old_length, ByteLength()});
}

void ZepVariant::EnsureWritable() const {
  if (read_only_) Raise(zepErrReadOnly);
}

void ZepVariant::EnsureWithin(const Slice& bytes) const {
  if (!IsWithin(bytes, ByteLength())) Raise(zepErrBadCall);
}

void ZepVariant::Resize(std::int32_t byte_length) {
  Ripple ripple(*this);
  const std::int32_t old_length = ByteLength();
  data_.resize(static_cast<std::size_t>(byte_length));
  if (byte_length < old_length) {
    Announce(ripple, {byte_length + 1, old_length - byte_length, 0});
  } else {
    Announce(ripple, {old_length + 1, 0, byte_length - old_length});
  }
}

void ZepVariant::GrowTo(std::int32_t byte_length) {
  if (byte_length > ByteLength()) data_.resize(static_cast<std::size_t>(byte_length));
}

std::uint8_t* ZepVariant::Renew(std::size_t length) {
  const bool fits = length <= data_.capacity() && length >= data_.capacity() / 2;
  if (fits) {
    data_.resize(length);
  } else {
    data_ = Bytes(length);
  }
  return data_.data();
}

Slice ZepVariant::BytesOfCharacters(const Slice& characters) const {
  if (!IsWithin(characters, StringLength())) Raise(zepErrBadCall);
  const Slice bytes = ToBytes(characters, string_type_);
  EnsureWithin(bytes);  // half a character at the end may count as one
  return bytes;
}

std::span<const std::uint8_t> ZepVariant::BytesIn(const Slice& slice) const {
  return std::span(data_).subspan(static_cast<std::size_t>(slice.start) - 1,
                                  static_cast<std::size_t>(slice.length));
}

/// Writes without announcing it. The bytes may be the buffer's own.
void ZepVariant::ReplaceBytes(const Slice& slice, std::span<const std::uint8_t> bytes) {
  const auto length = std::int64_t{ByteLength()} - slice.length + std::ssize(bytes);
  if (length > std::int64_t{kMaxLength}) throw std::bad_alloc();
  const bool own = bytes.data() >= data_.data() && bytes.data() < data_.data() + data_.size();
  if (own) {
    Replace(data_, slice, Bytes(bytes.begin(), bytes.end()));
  } else {
    Replace(data_, slice, bytes);
  }
}

void ZepVariant::ReplaceSlice(const Slice& slice, std::span<const std::uint8_t> bytes) {
  Ripple ripple(*this);
  ReplaceBytes(slice, bytes);
  Announce(ripple, {slice.start, slice.length, static_cast<std::int32_t>(bytes.size())});
}

void ZepVariant::Announce(Ripple& ripple, const Edit& edit) {
  ++version_;
  ripple.Run(edit);
}

/// The parent's half of `ConnectAsRange`.
void ZepVariant::RegisterRange(ZepVariant& view, const Slice& slice, bool byte_coordinates) {
  if (slice.start < 1 || slice.length < 0) Raise(zepErrBadCall);
  const Slice bytes = byte_coordinates ? slice : ToBytes(slice, string_type_);
  EnsureWithin(bytes);
  const auto shown = BytesIn(bytes);
  Bytes copy(shown.begin(), shown.end());
  const auto link = std::make_shared<RangeLink>(RangeLink{this, &view});
  link->parent_version = version_;
  link->view_version = view.version_ + 1;  // what is assigned here
  link->place = views_.insert(views_.end(), link);
  view.link_ = link;
  try {
    view.SetData(std::move(copy));
  } catch (...) {
    Break(*link);
    throw;
  }
  view.range_ = bytes;
}

void ZepVariant::Break(RangeLink& link) noexcept {
  const std::shared_ptr<RangeLink> broken = *link.place;
  broken->parent->views_.erase(broken->place);
  broken->view->link_ = nullptr;
  broken->view->is_range_ = false;
  broken->parent = broken->view = nullptr;
}

}  // namespace zepkit10
