#pragma once

#include <list>
#include <memory>
#include <string>

#include "buffer/slice.h"
#include "platform/automation/automation_object.h"
#include "platform/automation/safe_array.h"
#include "zep_variant_events.h"
#include "zep_variant_shim.h"

namespace zepkit10 {

class BufferQueue;
class Ripple;
class ZepVariant;

/// What ties a view to its parent. Both ends point nowhere once it is broken.
struct RangeLink {
  ZepVariant* parent;
  ZepVariant* view;
  std::list<std::shared_ptr<RangeLink>>::iterator place{};  // among the parent's views
  // The contents that were brought into step last.
  std::uint64_t parent_version = 0;
  std::uint64_t view_version = 0;
};

/// A byte buffer that reads and writes as bytes or as text. A buffer may be a view of a slice of
/// another one, its parent: each keeps its own copy of the bytes, and every change of the one is
/// brought to the other (see `Ripple`). Parent and views do not keep each other alive.
class ZepVariant final : public AutomationObject<ZepVariant, ZepVariantShim> {
 public:
  ZepVariant();
  ~ZepVariant() override;

  Unguarded<std::int32_t> ByteLength() const { return static_cast<std::int32_t>(data_.size()); }
  void SetByteLength(std::int32_t NewByteLength);
  void ConnectAsRange(::_ZepVariant* Parent, std::int32_t Start, std::int32_t Length,
                      bool ByteCoordinates);
  Unguarded<std::uint8_t> DataByte(std::int32_t Index) const;
  void SetDataByte(std::int32_t Index, std::uint8_t NewDataByte);
  SafeArray DataBytes() const;
  void SetDataBytes(SAFEARRAY* NewDataBytes);
  Bstr DataString() const;
  void SetDataString(std::u16string_view NewDataString);
  void DisconnectAsRange();
  void DisconnectRange(::_ZepVariant* Range);
  void DisconnectRanges();
  bool IsRange() const { return is_range_; }
  Ref<ZepVariant> Range(std::int32_t Start, std::int32_t Length, bool ByteCoordinates);
  void SetRange(std::int32_t Start, std::int32_t Length, bool ByteCoordinates,
                ::_ZepVariant* NewRange);
  SafeArray RangeBytes(std::int32_t Start, std::int32_t Length) const;
  void SetRangeBytes(std::int32_t Start, std::int32_t Length, SAFEARRAY* NewRangeBytes);
  std::int32_t RangeLength() const { return range_.length; }
  std::int32_t RangeStart() const { return range_.start; }
  Bstr RangeString(std::int32_t Start, std::int32_t Length) const;
  void SetRangeString(std::int32_t Start, std::int32_t Length, std::u16string_view NewRangeString);
  bool ReadOnly() const { return read_only_; }
  void SetReadOnly(bool NewReadOnly);
  std::int32_t StringLength() const { return CharacterCount(ByteLength(), string_type_); }
  void SetStringLength(std::int32_t NewStringLength);
  ZepStringType StringType() const { return string_type_; }
  void SetStringType(ZepStringType NewStringType);

  const Bytes& Data() const { return data_; }
  /// Replaces the content, which must not be read-only, and announces that.
  void SetData(Bytes data);

 private:
  friend class Ripple;

  void EnsureWritable() const;
  void EnsureWithin(const Slice& bytes) const;
  void Resize(std::int32_t byte_length);
  void GrowTo(std::int32_t byte_length);
  /// Gives the buffer so many bytes, all of them to be written now; memory that fits is used again.
  std::uint8_t* Renew(std::size_t length);
  Slice BytesOfCharacters(const Slice& characters) const;
  std::span<const std::uint8_t> BytesIn(const Slice& slice) const;
  void ReplaceBytes(const Slice& slice, std::span<const std::uint8_t> bytes);
  /// Writes, and announces it.
  void ReplaceSlice(const Slice& slice, std::span<const std::uint8_t> bytes);
  /// The end of an edit, to which the ripple was made before.
  void Announce(Ripple& ripple, const Edit& edit);
  void RegisterRange(ZepVariant& view, const Slice& slice, bool byte_coordinates);
  static void Break(RangeLink& link) noexcept;

  ZepVariantEvents events_{*this};
  const std::shared_ptr<BufferQueue> queue_;
  Bytes data_;
  ZepStringType string_type_ = ZepStringType::zepSTAnsi;
  bool read_only_ = false;
  bool notifying_ = false;     // a change is being announced
  std::uint64_t version_ = 1;  // of the content
  bool is_range_ = false;
  Slice range_{0, 0};                            // of the parent, in bytes
  std::shared_ptr<RangeLink> link_;              // to the parent
  std::list<std::shared_ptr<RangeLink>> views_;  // in order of connection
};

}  // namespace zepkit10
