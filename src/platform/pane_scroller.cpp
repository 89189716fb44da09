#include "platform/pane_scroller.h"

#include <algorithm>

namespace zepkit10 {

void PaneScroller::Attach(HWND bar, TextPane& pane, int row_height) {
  bar_ = bar;
  pane_ = &pane;
  row_height_ = row_height;
  ShowPosition();
}

bool PaneScroller::OnRequest(int request) {
  const std::int64_t position = pane_->Position();
  const int page = std::max(pane_->PageHeight() - row_height_, row_height_);
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_TRACKPOS;
  switch (request) {
    case SB_LINEUP:
      return ScrollTo(position - row_height_);
    case SB_LINEDOWN:
      return ScrollTo(position + row_height_);
    case SB_PAGEUP:
      return ScrollTo(position - page);
    case SB_PAGEDOWN:
      return ScrollTo(position + page);
    case SB_TOP:
      return ScrollTo(0);
    case SB_BOTTOM:
      return ScrollTo(pane_->MaxPosition());
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:  // the message has room for 16 bits only
      GetScrollInfo(bar_, SB_CTL, &info);
      return ScrollTo(info.nTrackPos);
    default:
      return false;
  }
}

bool PaneScroller::OnWheel(int delta) {
  constexpr UINT kMaxRows = 1000;
  UINT rows = 3;
  SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &rows, 0);
  const std::int64_t notch = rows == WHEEL_PAGESCROLL
                                 ? pane_->PageHeight()
                                 : std::int64_t{row_height_} * std::min(rows, kMaxRows);
  wheel_ += delta;
  const std::int64_t distance = wheel_ * notch / WHEEL_DELTA;
  if (distance == 0) return false;
  wheel_ = 0;
  return ScrollTo(pane_->Position() - distance);
}

int PaneScroller::RequestOf(WPARAM key) {
  switch (key) {
    case VK_UP:
      return SB_LINEUP;
    case VK_DOWN:
      return SB_LINEDOWN;
    case VK_PRIOR:
      return SB_PAGEUP;
    case VK_NEXT:
      return SB_PAGEDOWN;
    case VK_HOME:
      return SB_TOP;
    case VK_END:
      return SB_BOTTOM;
    default:
      return -1;
  }
}

bool PaneScroller::ScrollTo(std::int64_t position) {
  if (!pane_->ScrollTo(position)) return false;
  ShowPosition();
  return true;
}

void PaneScroller::ShowPosition() const {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  info.nMax = std::max(pane_->ContentHeight() - 1, 0);
  info.nPage = static_cast<UINT>(pane_->PageHeight());
  info.nPos = pane_->Position();
  SetScrollInfo(bar_, SB_CTL, &info, TRUE);
}

}  // namespace zepkit10
