#include "platform/surface.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

constexpr Colour kWhite = 0xFFFFFF;
constexpr int kWidth = 480;
constexpr int kHeight = 320;
constexpr double kMaxSize = 16384;
constexpr int kFontHeight = 13;  // pixels, about 10 points

int CheckedSize(double size) {
  const double rounded = std::nearbyint(size);
  if (!(rounded >= 1 && rounded <= kMaxSize)) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrBadCall);
  return static_cast<int>(rounded);
}

std::vector<Colour> WhitePixels(int width, int height) {
  return std::vector<Colour>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                             kWhite);
}

/// The pixels that a stretch between two positions covers, as far as they are on the surface: first
/// and last, the first above the last where there are none.
std::pair<int, int> Covered(const Axis& axis, double from, double to) {
  const auto first = axis.ToPixel(from), last = axis.ToPixel(to);
  if (!first || !last) return {0, -1};
  const double low = std::max(0.0, std::min(*first, *last));
  const double high = std::min(axis.Pixels() - 1.0, std::max(*first, *last));
  if (low > high) return {0, -1};
  return {static_cast<int>(low), static_cast<int>(high)};
}

struct DeleteHandle {
  void operator()(HGDIOBJ handle) const { DeleteObject(handle); }
};
struct DeleteContext {
  void operator()(HDC context) const { DeleteDC(context); }
};

/// A strip of pixels that the system can write text into, as high as a line.
class TextStrip {
 public:
  TextStrip(int width, int height)
      : font_(CreateFontW(-kFontHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                          VARIABLE_PITCH | FF_SWISS, L"Segoe UI")),
        context_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO format{};
    format.bmiHeader = {sizeof format.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* memory = nullptr;
    bitmap_.reset(CreateDIBSection(context_.get(), &format, DIB_RGB_COLORS, &memory, nullptr, 0));
    if (!font_ || !context_ || !bitmap_) throw std::bad_alloc();
    pixels_ = static_cast<Colour*>(memory);
    SelectObject(context_.get(), bitmap_.get());
    SelectObject(context_.get(), font_.get());
    SetBkMode(context_.get(), TRANSPARENT);
  }

  Colour* Pixels() { return pixels_; }

  int LineHeight() const {
    TEXTMETRICW metrics{};
    GetTextMetricsW(context_.get(), &metrics);
    return metrics.tmHeight;
  }

  void Write(std::u16string_view text, Colour colour) {
    SetTextColor(context_.get(), RGB(colour >> 16 & 0xFF, colour >> 8 & 0xFF, colour & 0xFF));
    TextOutW(context_.get(), 0, 0, reinterpret_cast<const wchar_t*>(text.data()),
             static_cast<int>(text.size()));
    GdiFlush();  // what was written is read from the memory directly
  }

 private:
  std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteHandle> font_;
  std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteHandle> bitmap_;
  // Behind the others, so that it is gone before what is selected into it.
  std::unique_ptr<std::remove_pointer_t<HDC>, DeleteContext> context_;
  Colour* pixels_;
};

}  // namespace

Surface::Surface() : x_(0, kWidth - 1, kWidth), y_(0, kHeight - 1, kHeight) {}

void Surface::Resize(double width, double height) {
  const int new_width = CheckedSize(width), new_height = CheckedSize(height);
  if (!pixels_.empty()) {
    auto resized = WhitePixels(new_width, new_height);
    const int columns = std::min(new_width, Width());
    for (int row = 0; row < std::min(new_height, Height()); ++row) {
      std::copy_n(&At(0, row), columns, resized.begin() + std::ptrdiff_t{row} * new_width);
    }
    pixels_ = std::move(resized);
  }
  x_ = Axis(x_.First(), x_.Last(), new_width);
  y_ = Axis(y_.First(), y_.Last(), new_height);
}

void Surface::Clear() {
  if (pixels_.empty()) {
    pixels_ = WhitePixels(Width(), Height());
  } else {
    std::fill(pixels_.begin(), pixels_.end(), kWhite);
  }
}

void Surface::SetScale(double left, double top, double right, double bottom) {
  x_ = Axis(left, right, Width());
  y_ = Axis(top, bottom, Height());
}

void Surface::LineAlongX(double from, double to, double y, Colour colour) {
  const auto row = y_.ToVisiblePixel(y);
  if (!row) return;
  const auto [first, last] = Covered(x_, from, to);
  for (int column = first; column <= last; ++column) At(column, *row) = colour;
}

void Surface::LineAlongY(double x, double from, double to, Colour colour) {
  const auto column = x_.ToVisiblePixel(x);
  if (!column) return;
  const auto [first, last] = Covered(y_, from, to);
  for (int row = first; row <= last; ++row) At(*column, row) = colour;
}

void Surface::TextLine(int line, std::u16string_view text, Colour colour) {
  const int first = line * TextLineHeight();
  const int rows = std::min(TextLineHeight(), Height() - first);
  if (rows <= 0) return;
  TextStrip strip(Width(), TextLineHeight());
  const auto count = std::ptrdiff_t{rows} * Width();
  std::copy_n(&At(0, first), count, strip.Pixels());
  // No more than could be seen: the platform would measure all of a long text.
  strip.Write(text.substr(0, static_cast<std::size_t>(Width())), colour);
  std::transform(strip.Pixels(), strip.Pixels() + count, &At(0, first),
                 [](Colour pixel) { return pixel & 0xFFFFFF; });
}

int Surface::TextLineHeight() {
  static const int height = TextStrip(1, 1).LineHeight();
  return height;
}

std::vector<Colour> Surface::Pixels() const {
  return pixels_.empty() ? WhitePixels(Width(), Height()) : pixels_;
}

}  // namespace zepkit10
